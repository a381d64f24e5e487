// Takes any bytes as the text of a form. It is refused, or makes a binary form whose text makes the same
// binary form.
#include "fuzz/Require.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "rtl/text/Exceptions.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const bool utf8 : {false, true}) {
    rtl::TTextBinaryOptions options;
    options.Utf8 = utf8;
    rtl::TTextInfo textInfo;
    std::string binary;
    try {
      binary = rtl::ObjectTextToBinary(text, options, textInfo);
    } catch (const rtl::EParserError&) {
      continue;
    }
    fuzz::Require(textInfo.Size <= size, "the form ends within the text");
    rtl::TBinaryInfo info;
    const std::string inMemory = rtl::ObjectBinaryToText(binary, {}, info);
    fuzz::Require(info.Size == binary.size(), "the binary form has nothing after its end");
    fuzz::Require(info.ClassName == textInfo.ClassName, "both forms name the same class");
    fuzz::Require(rtl::ObjectTextToBinary(inMemory, {}, textInfo) == binary,
                  "the text makes the same binary form");
  }
  return 0;
}
