#include "rtl/objects/FormTextScanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

#include "rtl/objects/ObjectValues.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Lines.h"
#include "rtl/text/SysUtils.h"
#include "rtl/text/Unicode.h"
#include "win/paths/CodePage.h"

namespace rtl {

namespace {

constexpr bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

constexpr uint8_t kNoDigit = 0xFF;
constexpr auto kHexDigits = [] {
  std::array<uint8_t, 256> table{};
  for (uint8_t& digit : table) digit = kNoDigit;
  for (size_t digit = 0; digit < 16; ++digit) {
    table[static_cast<uint8_t>("0123456789ABCDEF"[digit])] = static_cast<uint8_t>(digit);
    table[static_cast<uint8_t>("0123456789abcdef"[digit])] = static_cast<uint8_t>(digit);
  }
  return table;
}();
uint8_t HexDigit(char character) {
  return kHexDigits[static_cast<uint8_t>(character)];
}

// The characters that end a run in quotes: the quote, and those that are invalid in a string.
constexpr auto kEndsQuoted = [] {
  std::array<bool, 256> table{};
  table['\''] = table['\r'] = table['\n'] = table[0] = true;
  return table;
}();

bool IsAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) == 0; });
}

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

}  // namespace

TFormTextScanner::TFormTextScanner(std::string_view text, bool utf8, const TFormPath& path)
    : FBegin(text.data()), FNext(text.data()), FEnd(text.data() + text.size()), FUtf8(utf8), FPath(path) {
  if (text.substr(0, kUtf8Mark.size()) == kUtf8Mark) {
    FNext += kUtf8Mark.size();
    FUtf8 = true;
  }
}

void TFormTextScanner::Fail(std::string_view reason) const {
  const std::string_view text(FBegin, static_cast<size_t>(FEnd - FBegin));
  std::string message = "Form text, line " + std::to_string(TLineCounter(text).LineAt(Offset()));
  message.append(": ").append(reason);
  const std::string path = FPath.Describe();
  if (!path.empty()) message.append(" (").append(path).append(")");
  throw EParserError(message + ".");
}

void TFormTextScanner::Expect(char character) {
  if (!Accept(character)) Fail(std::string("\"") + character + "\" expected");
}

// Reads a name and the names after its dots. Returns an empty view if no name comes next.
std::string_view TFormTextScanner::ScanName() {
  const char* begin = FNext;
  if (begin == FEnd || !IsNameStart(*begin)) return {};
  const char* at = begin;
  do {
    ++at;
    while (at != FEnd && IsNamePart(*at)) ++at;
  } while (FEnd - at >= 2 && *at == '.' && IsNameStart(at[1]) && ++at != FEnd);
  FNext = at;
  return {begin, static_cast<size_t>(at - begin)};
}

std::string_view TFormTextScanner::Name(std::string_view what) {
  Peek();
  const std::string_view name = ScanName();
  if (name.empty()) Fail(std::string(what) + " expected");
  if (name.size() > 255) Fail(std::string(what) + " is longer than 255 bytes");
  return name;
}

std::string_view TFormTextScanner::PropertyName(std::string_view first) {
  if (Peek() != '.') return first;
  FJoinedName = first;
  while (Accept('.')) (FJoinedName += '.') += Name("a property's name");
  if (FJoinedName.size() > 255) Fail("a property's name is longer than 255 bytes");
  return FJoinedName;
}

bool TFormTextScanner::AcceptWholeKeyword(std::string_view keyword) {
  const char* begin = FNext;
  if (static_cast<size_t>(FEnd - begin) < keyword.size()) return false;
  if (!SameText({begin, keyword.size()}, keyword)) return false;
  FNext += keyword.size();
  const char* end = FNext;
  const bool wholeWord = end == FEnd || !IsNamePart(*end);
  const char next = wholeWord ? Peek() : '=';
  const bool property = next == '=' || next == '.';
  FNext = property ? begin : end;
  return !property;
}

void TFormTextScanner::ScanDigits() {
  if (FNext == FEnd || !IsDigit(*FNext)) Fail("malformed number");
  while (FNext != FEnd && IsDigit(*FNext)) ++FNext;
}

// `text` is [sign] digits, or [sign] $ and hexadecimal digits, which are the bits of the number.
TFormNumber TFormTextScanner::IntegerOf(std::string_view text) {
  const std::string_view written = text;
  const bool negative = text[0] == '-';
  if (text[0] == '-' || text[0] == '+') text.remove_prefix(1);
  const int base = text[0] == '$' ? 16 : 10;
  if (base == 16) text.remove_prefix(1);
  uint64_t magnitude = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
  const uint64_t largest = base == 16 ? UINT64_MAX : static_cast<uint64_t>(INT64_MAX) + (negative ? 1 : 0);
  if (error != std::errc() || end != text.data() + text.size() || magnitude > largest)
    Fail("an integer that 64 bits do not hold");
  const auto value = static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
  const size_t zeros = base == 16 ? 0 : std::min(text.find_first_not_of('0'), text.size() - 1);
  return {TNumberType::Integer, {value, zeros}, written};
}

TFormNumber TFormTextScanner::Number() {
  const char* begin = FNext;
  const auto text = [&] { return std::string_view(begin, static_cast<size_t>(FNext - begin)); };
  const auto finished = [&] { return FNext == FEnd || (!IsNamePart(*FNext) && *FNext != '.'); };
  if (*FNext == '-' || *FNext == '+') ++FNext;
  if (FNext != FEnd && *FNext == '$') {
    ++FNext;
    while (FNext != FEnd && HexDigit(*FNext) != kNoDigit) ++FNext;
    if (FNext[-1] == '$' || !finished()) Fail("malformed number");
    return IntegerOf(text());
  }
  ScanDigits();
  if (finished()) return IntegerOf(text());
  TNumberType type = TNumberType::Extended;
  if (*FNext == '.') {
    ++FNext;
    while (FNext != FEnd && IsDigit(*FNext)) ++FNext;
  }
  if (FNext != FEnd && (*FNext | 0x20) == 'e') {
    const char* exponent = FNext++;
    if (FNext != FEnd && (*FNext == '-' || *FNext == '+')) ++FNext;
    ScanDigits();
    if (std::string_view(exponent, static_cast<size_t>(FNext - exponent)) == "E0") type = TNumberType::Double;
  }
  const std::string_view number = text();
  if (finished()) return {type, {}, number};
  switch (*FNext++ | 0x20) {
    case 's':
      type = TNumberType::Single;
      break;
    case 'd':
      type = TNumberType::Date;
      break;
    case 'c':
      type = TNumberType::Currency;
      break;
    default:
      Fail("malformed number");
  }
  if (!finished()) Fail("malformed number");
  return {type, {}, number};
}

// Reads up to and including the next quote. Returns the bytes between the quotes.
std::string_view TFormTextScanner::QuotedPiece() {
  const char* begin = ++FNext;
  while (FNext != FEnd && !kEndsQuoted[static_cast<uint8_t>(*FNext)]) ++FNext;
  if (FNext == FEnd || *FNext != '\'') Fail("a string that is not closed on its line");
  return {begin, static_cast<size_t>(FNext++ - begin)};
}

uint32_t TFormTextScanner::CodePiece() {
  ++FNext;
  if (FNext == FEnd || !IsDigit(*FNext)) Fail("\"#\" without a character code");
  uint32_t code = 0;
  for (; FNext != FEnd && IsDigit(*FNext); ++FNext) {
    code = code * 10 + static_cast<uint32_t>(*FNext - '0');
    if (code > 0xFFFF) Fail("a character code above 65535");
  }
  return code;
}

// Skips a "+" and moves to the string after it, which belongs to this one. Returns false if there is no "+".
bool TFormTextScanner::AcceptConcatenation() {
  if (!Accept('+')) return false;
  Peek();
  if (!AtPiece()) Fail("a string expected after \"+\"");
  return true;
}

TFormString TFormTextScanner::String() {
  const char* begin = FNext;
  if (*FNext == '\'') {  // one plain piece, as nearly all are
    const std::string_view piece = QuotedPiece();
    if (!AtPiece() && Peek() != '+' && (!FUtf8 || IsAscii(piece))) return {false, piece, {}};
    FNext = begin;
  }
  if (NarrowString()) return {false, FBytes, {}};
  FNext = begin;
  WideString();
  return {true, {}, FUnits};
}

// Reads the string into FBytes. Returns false, at any position, if it turns out to be wide.
bool TFormTextScanner::NarrowString() {
  FBytes.clear();
  do {
    for (const char* open = nullptr; AtPiece();) {
      if (*FNext == '#') {
        const uint32_t code = CodePiece();
        if (code > 127) return false;
        FBytes += static_cast<char>(code);
        open = nullptr;
      } else {
        if (open == FNext) FBytes += '\'';  // a doubled quote
        const std::string_view piece = QuotedPiece();
        if (FUtf8 && !IsAscii(piece)) return false;
        FBytes += piece;
        open = FNext;
      }
    }
  } while (AcceptConcatenation());
  return true;
}

// Reads the string into FUnits.
void TFormTextScanner::WideString() {
  FUnits.clear();
  FBytes.clear();
  do {
    for (const char* open = nullptr; AtPiece();) {
      if (*FNext == '#') {
        AppendRaw();
        FUnits += static_cast<char16_t>(CodePiece());
        open = nullptr;
      } else {
        if (open == FNext) FBytes += '\'';
        FBytes += QuotedPiece();
        open = FNext;
      }
    }
  } while (AcceptConcatenation());
  AppendRaw();
}

// Appends the bytes quoted since the last code to FUnits.
void TFormTextScanner::AppendRaw() {
  const bool narrow = !FUtf8 && !IsAscii(FBytes);
  if (Utf8ToUtf16(narrow ? win::SourceToUtf8(FBytes) : FBytes, TSurrogates::Allow, FUnits) !=
      std::string::npos)
    Fail("malformed UTF-8 in a string");
  FBytes.clear();
}

size_t TFormTextScanner::BinaryLength() const {
  size_t digits = 0;
  const char* at = FNext + 1;
  for (; at != FEnd && *at != '}'; ++at) {
    if (HexDigit(*at) != kNoDigit) {
      ++digits;
    } else if (*at < 1 || *at > 32) {
      Fail("a character in binary data that is no hexadecimal digit");
    }
  }
  if (at == FEnd) Fail("binary data without its \"}\"");
  if (digits % 2 != 0) Fail("binary data with an odd number of digits");
  return digits / 2;
}

void TFormTextScanner::Binary(TByteSink& sink) {
  ++FNext;
  while (Peek() != '}') {
    // A run of pairs first, then a pair that white space divides.
    char* out = sink.Room();
    const char* limit = out + TByteSink::kRoom;
    for (; FEnd - FNext >= 2 && out != limit; FNext += 2) {
      const uint8_t high = HexDigit(FNext[0]);
      const uint8_t low = HexDigit(FNext[1]);
      if ((high | low) == kNoDigit) break;
      *out++ = static_cast<char>(high << 4 | low);
    }
    sink.Take(out);
    if (Peek() == '}' || out == limit) continue;
    if (FEnd - FNext >= 2 && HexDigit(FNext[0]) != kNoDigit && HexDigit(FNext[1]) == kNoDigit) {
      const int high = HexDigit(*FNext++);
      Peek();
      sink.Append(static_cast<char>(high << 4 | HexDigit(*FNext++)));
    }
  }
  ++FNext;
}

}  // namespace rtl
