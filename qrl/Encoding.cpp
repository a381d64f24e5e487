#include "qrl/Encoding.h"

#include <algorithm>
#include <cstdint>

#include "rtl/text/Exceptions.h"

namespace qrl {
namespace {

constexpr bool IsHighSurrogate(uint32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLowSurrogate(uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

uint32_t UnitAt(std::string_view bytes, size_t offset) {
  return static_cast<uint32_t>(static_cast<uint8_t>(bytes[offset]) | static_cast<uint8_t>(bytes[offset + 1])
                                                                         << 8);
}

void AppendUtf8(std::string& text, uint32_t code) {
  const auto put = [&text](uint32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | code >> 6);
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | code >> 12);
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | code >> 18);
    put(0x80 | (code >> 12 & 0x3F));
    put(0x80 | (code >> 6 & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

void AppendUnit(std::string& bytes, uint32_t unit) {
  bytes += static_cast<char>(unit & 0xFF);
  bytes += static_cast<char>(unit >> 8);
}

// How many bytes the character that begins with `lead` takes.
constexpr size_t Utf8Length(uint8_t lead) {
  return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

class TByteEncoding : public TEncoding {
 public:
  std::string GetString(std::string bytes) const override { return bytes; }
  std::string GetBytes(std::string_view text) const override { return std::string(text); }
};

class TUtf16Encoding : public TEncoding {
 public:
  std::string GetString(std::string bytes) const override {
    if (bytes.size() % 2 != 0) throw rtl::EConvertError("UTF-16 text with an odd number of bytes.");
    std::string text;
    text.reserve(bytes.size() / 2 + bytes.size() / 16);
    for (size_t i = 0; i < bytes.size(); i += 2) {
      uint32_t code = UnitAt(bytes, i);
      if (IsHighSurrogate(code) && i + 2 < bytes.size() && IsLowSurrogate(UnitAt(bytes, i + 2))) {
        code = 0x10000 + ((code - 0xD800) << 10) + (UnitAt(bytes, i + 2) - 0xDC00);
        i += 2;
      }
      AppendUtf8(text, code);
    }
    return text;
  }

  // `text` came out of GetString, or is ASCII: it is never malformed.
  std::string GetBytes(std::string_view text) const override {
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (size_t i = 0; i < text.size();) {
      const auto lead = static_cast<uint8_t>(text[i]);
      const size_t length = std::min(Utf8Length(lead), text.size() - i);
      uint32_t code = length == 1 ? lead : lead & (0x7FU >> length);
      for (size_t k = 1; k < length; ++k) code = code << 6 | (static_cast<uint8_t>(text[i + k]) & 0x3F);
      i += length;
      if (code >= 0x10000) {
        AppendUnit(bytes, 0xD800 + ((code - 0x10000) >> 10));
        code = 0xDC00 + ((code - 0x10000) & 0x3FF);
      }
      AppendUnit(bytes, code);
    }
    return bytes;
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
