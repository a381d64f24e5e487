#include "rtl/FormTextPrinter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "win/CodePage.h"

namespace rtl {

namespace {

constexpr size_t kLineLength = 64;    // characters of a string on a line, as they are in the string
constexpr size_t kBytesPerLine = 32;  // of binary data

// Whether a character stands as itself between quotes; the quote is a case of its own. Narrow bytes from 128
// up do.
constexpr bool IsPlain(char byte) {
  const uint8_t code = static_cast<uint8_t>(byte);
  return code >= 32 && code != 127;
}
constexpr bool IsPlain(char16_t unit) {
  return unit >= 32 && unit <= 126;
}
constexpr auto kPlainBytes = [] {
  std::array<bool, 256> table{};
  for (size_t byte = 0; byte < 256; ++byte) table[byte] = IsPlain(static_cast<char>(byte)) && byte != '\'';
  return table;
}();

constexpr auto kHexPairs = [] {
  std::array<char, 512> table{};
  for (size_t byte = 0; byte < 256; ++byte) {
    table[byte * 2] = "0123456789ABCDEF"[byte >> 4];
    table[byte * 2 + 1] = "0123456789ABCDEF"[byte & 15];
  }
  return table;
}();

bool IsAllPlain(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char byte) { return kPlainBytes[static_cast<uint8_t>(byte)]; });
}

unsigned Code(char byte) {
  return static_cast<uint8_t>(byte);
}
unsigned Code(char16_t unit) {
  return unit;
}

// How much of `units` goes on one line. A double-byte character of the source code page is not cut in two.
size_t LineEndOf(std::u16string_view units) {
  return std::min(units.size(), kLineLength);
}
size_t LineEndOf(std::string_view bytes) {
  if (bytes.size() <= kLineLength) return bytes.size();
  if (!win::IsDoubleByteCodePage()) return kLineLength;
  size_t at = 0;
  while (at < kLineLength) {
    const bool pair = at + 1 < bytes.size() && win::IsDBCSLeadByte(static_cast<uint8_t>(bytes[at])) &&
                      win::IsDBCSTrailByte(static_cast<uint8_t>(bytes[at + 1]));
    at += pair ? 2 : 1;
  }
  return at;
}

}  // namespace

void TFormTextPrinter::Indent(size_t level) {
  const size_t count = 2 * std::min(level, kDeepest);
  static_assert(2 * kDeepest <= TByteSink::kRoom);
  char* out = FSink.Room();
  std::memset(out, ' ', count);
  FSink.Take(out + count);
}

void TFormTextPrinter::Integer(int64_t value) {
  char* out = FSink.Room();
  FSink.Take(std::to_chars(out, out + TByteSink::kRoom, value).ptr);
}

void TFormTextPrinter::NarrowString(std::string_view bytes, size_t level) {
  if (FForPeople && bytes.size() > kLineLength) return BrokenString(bytes, level);
  if (!IsAllPlain(bytes)) return Line(bytes);
  FSink.Append('\'');
  FSink.Append(bytes);
  FSink.Append('\'');
}

void TFormTextPrinter::WideString(std::u16string_view units, size_t level) {
  if (FForPeople && units.size() > kLineLength) return BrokenString(units, level);
  if (units.empty()) return FSink.Append("''");
  Line(units);
}

template <typename TUnits>
void TFormTextPrinter::BrokenString(const TUnits& units, size_t level) {
  TUnits rest = units;
  while (true) {
    EndLine();
    Indent(level + 1);
    const size_t count = LineEndOf(rest);
    Line(rest.substr(0, count));
    rest.remove_prefix(count);
    if (rest.empty()) break;
    FSink.Append(" +");
  }
}

// A piece of a string: quoted runs and codes, end to end.
template <typename TUnits>
void TFormTextPrinter::Line(const TUnits& units) {
  constexpr size_t kLongest = 8;  // a unit as text, with the quotes around it: #65535, or '''
  bool quoted = false;
  for (size_t at = 0; at < units.size();) {
    char* out = FSink.Room();
    for (const char* limit = out + TByteSink::kRoom - kLongest; at < units.size() && out < limit; ++at) {
      const auto unit = units[at];
      const bool quote = unit == '\'';
      const bool plain = IsPlain(unit) && !(quote && FForPeople);
      if (plain != quoted) *out++ = '\'';
      quoted = plain;
      if (plain) {
        *out++ = static_cast<char>(unit);
        if (quote) *out++ = '\'';
      } else {
        *out++ = '#';
        out = std::to_chars(out, out + 5, Code(unit)).ptr;
      }
    }
    FSink.Take(out);
  }
  if (quoted) FSink.Append('\'');
}

void TFormTextPrinter::Binary(std::string_view bytes, size_t level) {
  FSink.Append('{');
  const bool severalLines = bytes.size() >= kBytesPerLine;
  while (!bytes.empty()) {
    if (severalLines) {
      EndLine();
      Indent(level + 1);
    }
    const std::string_view line = bytes.substr(0, kBytesPerLine);
    char* out = FSink.Room();
    for (char byte : line) {
      std::memcpy(out, &kHexPairs[size_t{2} * static_cast<uint8_t>(byte)], 2);
      out += 2;
    }
    FSink.Take(out);
    bytes.remove_prefix(line.size());
  }
  FSink.Append('}');
}

}  // namespace rtl
