#include "qrl/Encoding.h"

#include <bit>
#include <cstring>

#include "rtl/text/Exceptions.h"
#include "rtl/text/Unicode.h"

namespace qrl {
namespace {

static_assert(std::endian::native == std::endian::little, "units are copied as they are in the file");

class TByteEncoding : public TEncoding {
 public:
  std::string GetString(std::string bytes) const override { return bytes; }
  std::string GetBytes(std::string_view text) const override { return std::string(text); }
};

class TUtf16Encoding : public TEncoding {
 public:
  std::string GetString(std::string bytes) const override {
    if (bytes.size() % 2 != 0) throw rtl::EConvertError("UTF-16 text with an odd number of bytes.");
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), bytes.size());
    std::string().swap(bytes);
    std::string text;
    text.reserve(units.size() + units.size() / 8);
    rtl::Utf16ToUtf8(units, text);
    return text;
  }

  std::string GetBytes(std::string_view text) const override {
    std::u16string units;
    units.reserve(text.size());
    if (rtl::Utf8ToUtf16(text, rtl::TSurrogates::Allow, units) != std::string_view::npos)
      throw rtl::EConvertError("Malformed UTF-8 in text that is to be written as UTF-16.");
    return {reinterpret_cast<const char*>(units.data()), units.size() * 2};
  }

  bool IsIdentity() const override { return false; }
  std::string_view WrittenMark() const override { return "\xFF\xFE"; }
};

}  // namespace

const TEncoding& TEncoding::Default() {
  static const TByteEncoding encoding;
  return encoding;
}

const TEncoding& TEncoding::UTF8() {
  static const TByteEncoding encoding;
  return encoding;
}

const TEncoding& TEncoding::Unicode() {
  static const TUtf16Encoding encoding;
  return encoding;
}

}  // namespace qrl
