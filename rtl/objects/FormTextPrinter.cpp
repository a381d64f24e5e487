#include "rtl/objects/FormTextPrinter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "rtl/objects/EightBytes.h"
#include "win/paths/CodePage.h"

namespace rtl {

namespace {

constexpr size_t kLineLength = 64;    // characters of a string on one line, before quotes are doubled
constexpr size_t kBytesPerLine = 32;  // of binary data

// Whether a byte of a narrow string is written as itself between quotes. Those from 128 up are, the quote is
// not.
constexpr auto kPlainBytes = [] {
  std::array<bool, 256> table{};
  for (size_t byte = 32; byte < 256; ++byte) table[byte] = byte != 127 && byte != '\'';
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

// Returns the first byte of the range that is not written as itself between quotes, or `end`.
const char* EndOfPlain(const char* at, const char* end) {
  for (; end - at >= 8; at += 8) {
    const TEightBytes bytes(at);
    if (bytes.AnyBelow(32) || bytes.Any('\'') || bytes.Any(127)) break;
  }
  while (at != end && kPlainBytes[static_cast<uint8_t>(*at)]) ++at;
  return at;
}

// Returns the number of `units` that fit on one line. Does not split a multi-byte character of the source
// code page.
size_t LineEndOf(std::u16string_view units) {
  return std::min(units.size(), kLineLength);
}
size_t LineEndOf(std::string_view bytes) {
  if (bytes.size() <= kLineLength) return bytes.size();
  size_t at = kLineLength;
  if (win::GetACP() == win::kUtf8CodePage) {
    while (at < bytes.size() && at < kLineLength + 3 && (bytes[at] & 0xC0) == 0x80) ++at;
  } else if (win::IsDoubleByteCodePage()) {
    for (at = 0; at < kLineLength;) {
      const bool pair = at + 1 < bytes.size() && win::IsDBCSLeadByte(static_cast<uint8_t>(bytes[at])) &&
                        win::IsDBCSTrailByte(static_cast<uint8_t>(bytes[at + 1]));
      at += pair ? 2 : 1;
    }
  }
  return at;
}

}  // namespace

char* TFormTextPrinter::Blanks(char* out, size_t level) const {
  const size_t count = 2 * std::min(level, FDeepest);
  std::memset(out, ' ', count);
  return out + count;
}

void TFormTextPrinter::Indent(size_t level) {
  FSink.Take(Blanks(FSink.Room(), level));
}

void TFormTextPrinter::PropertyName(size_t level, std::string_view name) {
  static_assert(2 * kDeepest + 255 + 3 <= TByteSink::kRoom);
  char* out = Blanks(FSink.Room(), level);
  out = std::copy(name.begin(), name.end(), out);
  constexpr std::string_view kEquals = " = ";
  FSink.Take(std::copy(kEquals.begin(), kEquals.end(), out));
}

void TFormTextPrinter::Integer(const TStoredInteger& integer) {
  char* out = FSink.Room();
  uint64_t magnitude = static_cast<uint64_t>(integer.Value);
  if (integer.Value < 0) {
    *out++ = '-';
    magnitude = 0 - magnitude;
  }
  for (size_t zeros = integer.ExtraWidth; zeros > 0; --zeros) *out++ = '0';
  FSink.Take(std::to_chars(out, out + 20, magnitude).ptr);
}

void TFormTextPrinter::NarrowString(std::string_view bytes, size_t level) {
  if (FForPeople && bytes.size() > kLineLength) return BrokenString(bytes, level);
  if (bytes.empty()) return FSink.Append("''");
  Line(bytes);
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

void TFormTextPrinter::Code(unsigned code) {
  char* out = FSink.Room();
  *out++ = '#';
  FSink.Take(std::to_chars(out, out + 5, code).ptr);
}

// Writes one piece of a string: quoted runs and codes, end to end.
void TFormTextPrinter::Line(std::string_view bytes) {
  bool quoted = false;
  const auto setQuoted = [&](bool now) {
    if (quoted != now) FSink.Append('\'');
    quoted = now;
  };
  const char* const end = bytes.data() + bytes.size();
  for (const char* at = bytes.data(); at != end;) {
    const char* const run = at;
    at = EndOfPlain(run, end);
    if (at != run) {
      setQuoted(true);
      FSink.Append({run, static_cast<size_t>(at - run)});
    }
    if (at == end) break;
    const char byte = *at++;
    const bool doubled = byte == '\'' && !FForPeople;
    setQuoted(doubled);
    if (doubled) {
      FSink.Append("''");
    } else {
      Code(static_cast<uint8_t>(byte));
    }
  }
  setQuoted(false);
}

void TFormTextPrinter::Line(std::u16string_view units) {
  bool quoted = false;
  for (const char16_t unit : units) {
    const bool quote = unit == '\'';
    const bool plain = unit >= 32 && unit <= 126 && !(quote && FForPeople);
    if (plain != quoted) FSink.Append('\'');
    quoted = plain;
    if (plain) {
      FSink.Append(static_cast<char>(unit));
      if (quote) FSink.Append('\'');
    } else {
      Code(unit);
    }
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
