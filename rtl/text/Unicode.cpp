#include "rtl/text/Unicode.h"

#include <cstdint>

namespace rtl {

namespace {

constexpr bool IsHighSurrogate(uint32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(uint32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

struct TSequence {
  size_t Length;
  uint32_t Lowest;     // the lowest character that needs this length
  uint32_t FirstBits;  // the bits of the character in the first byte
};
// Returns the sequence that `first` begins; its length is 0 if no sequence begins with that byte.
constexpr TSequence SequenceOf(uint8_t first) {
  if (first < 0x80) return {1, 0, first};
  if (first >= 0xC2 && first <= 0xDF) return {2, 0x80, first & 0x1FU};
  if (first >= 0xE0 && first <= 0xEF) return {3, 0x800, first & 0x0FU};
  if (first >= 0xF0 && first <= 0xF4) return {4, 0x10000, first & 0x07U};
  return {0, 0, 0};
}

// Returns the first character of `units`, a lone surrogate as itself, and sets `count` to its number of
// units.
uint32_t FrontOf(std::u16string_view units, size_t& count) {
  const uint32_t first = units[0];
  count = 1;
  if (!IsHighSurrogate(first) || units.size() < 2 || !IsLowSurrogate(units[1])) return first;
  count = 2;
  return 0x10000 + ((first - 0xD800) << 10) + (units[1] - 0xDC00U);
}

}  // namespace

size_t Utf8ToUtf16(std::string_view utf8, TSurrogates surrogates, std::u16string& units) {
  for (size_t at = 0; at < utf8.size();) {
    const TSequence sequence = SequenceOf(static_cast<uint8_t>(utf8[at]));
    if (sequence.Length == 0 || sequence.Length > utf8.size() - at) return at;
    uint32_t character = sequence.FirstBits;
    for (size_t i = 1; i < sequence.Length; ++i) {
      const uint8_t byte = static_cast<uint8_t>(utf8[at + i]);
      if ((byte & 0xC0) != 0x80) return at;
      character = (character << 6) | (byte & 0x3FU);
    }
    const bool surrogate = IsHighSurrogate(character) || IsLowSurrogate(character);
    if (character < sequence.Lowest || character > 0x10FFFF) return at;
    if (surrogate && surrogates == TSurrogates::Refuse) return at;
    if (character >= 0x10000) {
      units += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    } else {
      units += static_cast<char16_t>(character);
    }
    at += sequence.Length;
  }
  return std::string_view::npos;
}

size_t Utf8Length(std::u16string_view units) {
  size_t length = 0;
  for (size_t count = 0; !units.empty(); units.remove_prefix(count)) {
    const uint32_t character = FrontOf(units, count);
    if (IsHighSurrogate(character) || IsLowSurrogate(character)) return std::string_view::npos;
    length += character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  }
  return length;
}

void Utf16ToUtf8(std::u16string_view units, std::string& utf8) {
  for (size_t count = 0; !units.empty(); units.remove_prefix(count)) {
    const uint32_t character = FrontOf(units, count);
    const auto tail = [&](int shift) { return static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
      utf8 += static_cast<char>(character);
    } else if (character < 0x800) {
      (utf8 += static_cast<char>(0xC0 | (character >> 6))) += tail(0);
    } else if (character < 0x10000) {
      ((utf8 += static_cast<char>(0xE0 | (character >> 12))) += tail(6)) += tail(0);
    } else {
      (((utf8 += static_cast<char>(0xF0 | (character >> 18))) += tail(12)) += tail(6)) += tail(0);
    }
  }
}

}  // namespace rtl
