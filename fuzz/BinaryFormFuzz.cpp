// Takes any bytes as a binary form. They are refused, or give a text whose binary form has the same text.
// The text for people makes the same binary form as the text for memory.
#include "fuzz/Require.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "rtl/text/Exceptions.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::string text;
  rtl::TBinaryInfo info;
  try {
    text = rtl::ObjectBinaryToText(bytes, {}, info);
  } catch (const rtl::EFilerError&) {
    return 0;
  }
  fuzz::Require(info.Size <= size, "the form ends within the data");
  rtl::TTextInfo textInfo;
  rtl::TTextBinaryOptions options;
  options.EmptyString = info.EmptyString;
  const std::string binary = rtl::ObjectTextToBinary(text, options, textInfo);
  fuzz::Require(textInfo.ClassName == info.ClassName, "both forms name the same class");
  rtl::TBinaryInfo again;
  fuzz::Require(rtl::ObjectBinaryToText(binary, {}, again) == text,
                "the binary form gives the same text again");
  fuzz::Require(again.Size == binary.size(), "the binary form has nothing after its end");

  std::string shown;
  try {
    shown = rtl::ObjectBinaryToText(bytes, {.ForPeople = true}, info);
  } catch (const rtl::EFilerError&) {
    return 0;  // values without a decimal text
  }
  fuzz::Require(rtl::ObjectTextToBinary(shown, options, textInfo) == binary,
                "both texts make the same binary form");
  return 0;
}
