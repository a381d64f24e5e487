// Any bytes as a binary form: an error, or a text that converts back to a binary form with the same text.
#include <cstdlib>

#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "rtl/text/Exceptions.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text;
  rtl::TBinaryInfo info;
  try {
    text = rtl::ObjectBinaryToText({reinterpret_cast<const char*>(data), size}, {}, info);
  } catch (const rtl::Exception&) {
    return 0;
  }
  rtl::TTextInfo ignored;
  rtl::TTextBinaryOptions options;
  options.EmptyString = info.EmptyString;
  const std::string binary = rtl::ObjectTextToBinary(text, options, ignored);
  if (rtl::ObjectBinaryToText(binary, {}, info) != text) std::abort();
  return 0;
}
