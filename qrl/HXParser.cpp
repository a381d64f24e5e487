#include "qrl/HXParser.h"

#include <algorithm>

#include "win/paths/CodePage.h"

namespace qrl {
namespace {

constexpr bool IsLetter(uint8_t c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
constexpr bool IsDigit(uint8_t c) {
  return c >= '0' && c <= '9';
}
constexpr bool MayBeginComment(uint8_t c) {
  return c == '{' || c == '(' || c == '/';
}
constexpr uint8_t OtherCase(uint8_t c) {
  return IsLetter(c) ? c ^ 0x20 : c;
}

}  // namespace

TScannerTables::TScannerTables(const TIntValueStringList& symbols, const TIntValueStringList& keywords,
                               TTests tests)
    : FKeywords(&keywords) {
  for (unsigned i = 0; i < 256; ++i) {
    const auto c = static_cast<uint8_t>(i);
    FNamePart[c] = IsLetter(c) || IsDigit(c) || c == '_' || c >= 128;
    FNumberPart[c] = tests.IsNumber(c);
    FStart[c] = c == 0                   ? TTokenStart::Nul
                : c <= 32                ? TTokenStart::Blank
                : tests.IsStringQuote(c) ? TTokenStart::Quote
                : IsDigit(c) || c == '$' ? TTokenStart::Number
                : FNamePart[c]           ? TTokenStart::Name
                : tests.IsSymbol(c)      ? TTokenStart::Symbol
                                         : TTokenStart::Other;
    FSymbolCode[c] = kOther;
    FIsPassed[c] = FStart[c] == TTokenStart::Nul || FStart[c] == TTokenStart::Blank ||
                   FStart[c] == TTokenStart::Other ||
                   (FStart[c] == TTokenStart::Symbol && !MayBeginComment(c));
  }
  for (int i = 0; i < symbols.GetCount(); ++i)
    FSymbolCode[static_cast<uint8_t>(symbols.GetKey(i)[0])] = symbols.GetValue(i);
  for (int i = 0; i < keywords.GetCount(); ++i) {
    const std::string& key = keywords.GetKey(i);
    const auto first = static_cast<uint8_t>(key[0]);
    FKeywordLengths[first] |= 1U << key.size();
    FKeywordLengths[OtherCase(first)] |= 1U << key.size();
  }
}

int TParser::GetNext(std::string_view& lexem) {
  FPrevPos = FPos;
  if (FPos >= FText.size()) {
    lexem = {};
    return kEndOfText;
  }
  using TTokenStart = TScannerTables::TTokenStart;
  const char* const begin = FText.data() + FPos;
  const char* const end = FText.data() + FText.size();
  const char* next = begin + 1;
  const auto first = static_cast<uint8_t>(*begin);
  int code = kOther;
  switch (FTables.FStart[first]) {
    case TTokenStart::Quote:
      return ScanString(lexem);
    case TTokenStart::Blank:
      while (next != end && FTables.FStart[static_cast<uint8_t>(*next)] == TTokenStart::Blank) ++next;
      code = kWhiteSpace;
      break;
    case TTokenStart::Name:
      return ScanName(lexem);
    case TTokenStart::Number:
      while (next != end && FTables.FNumberPart[static_cast<uint8_t>(*next)]) ++next;
      code = kNumber;
      break;
    case TTokenStart::Symbol:
      code = FTables.FSymbolCode[first];
      if (MayBeginComment(first) && SkipComment()) {
        next = FText.data() + FPos;
        code = kComment;
      }
      break;
    case TTokenStart::Nul:
      code = kNul;
      break;
    case TTokenStart::Other:
      break;
  }
  const auto length = static_cast<size_t>(next - begin);
  FPos = FPrevPos + length;
  lexem = {begin, length};
  return code;
}

int TParser::GetNextWord(std::string_view& lexem) {
  for (;;) {
    const char* next = FText.data() + FPos;
    const char* const end = FText.data() + FText.size();
    while (next != end && FTables.FIsPassed[static_cast<uint8_t>(*next)]) ++next;
    FPos = static_cast<size_t>(next - FText.data());
    if (next != end && FTables.FStart[static_cast<uint8_t>(*next)] == TScannerTables::TTokenStart::Name) {
      FPrevPos = FPos;
      return ScanName(lexem);
    }
    const int code = GetNext(lexem);
    if (code == kComment || code == kEndOfText) return code;
  }
}

// Scans the identifier or keyword at the present position, which is the first byte of a name.
int TParser::ScanName(std::string_view& lexem) {
  const char* const begin = FText.data() + FPos;
  if (FDoubleByte) {
    SkipDoubleByteName();
  } else {
    const char* const end = FText.data() + FText.size();
    const char* next = begin + 1;
    while (next != end && FTables.FNamePart[static_cast<uint8_t>(*next)]) ++next;
    FPos = static_cast<size_t>(next - FText.data());
  }
  lexem = FText.substr(FPrevPos, FPos - FPrevPos);
  const bool mayBeKeyword =
      lexem.size() < 32 && (FTables.FKeywordLengths[static_cast<uint8_t>(*begin)] >> lexem.size() & 1) != 0;
  const int keyword = mayBeKeyword ? FTables.FKeywords->Lookup(lexem) : 0;
  return keyword != 0 ? keyword : kIdentifier;
}

// Returns True if a double-byte character begins at `position`.
bool TParser::IsPair(size_t position) const {
  return win::IsDBCSLeadByte(At(position)) && win::IsDBCSTrailByte(At(position + 1));
}

void TParser::SkipDoubleByteName() {
  for (;;) {
    if (IsPair(FPos)) {
      FPos += 2;
    } else if (FPos < FText.size() && FTables.FNamePart[At(FPos)]) {
      ++FPos;
    } else {
      break;
    }
  }
}

// Returns False and changes nothing if no comment begins here.
bool TParser::SkipComment() {
  const uint8_t first = At(FPos);
  const uint8_t second = At(FPos + 1);
  if (first == '{') {
    SkipBraces();
  } else if (first == '(' && second == '*') {
    const size_t end = FText.find("*)", FPos + 2);
    FPos = end == std::string_view::npos ? FText.size() : end + 2;
  } else if (first == '/' && second == '/') {
    FPos = std::min(FText.find_first_of("\r\n", FPos), FText.size());
  } else {
    return false;
  }
  return true;
}

void TParser::SkipBraces() {
  if (!FDoubleByte) {
    const size_t end = FText.find('}', FPos);
    FPos = end == std::string_view::npos ? FText.size() : end + 1;
    return;
  }
  while (FPos < FText.size() && At(FPos) != '}') FPos += IsPair(FPos) ? 2 : 1;
  FPos = std::min(FPos + 1, FText.size());
}

// Double-byte characters need no special handling, because their second byte is never a quote or a line end.
int TParser::ScanString(std::string_view& lexem) {
  const char quote = FText[FPos];
  size_t place = FPos + 1;
  bool closed = false;
  while (!closed) {
    const auto isStop = [quote](char c) { return c == quote || c == '\r' || c == '\n'; };
    while (place < FText.size() && !isStop(FText[place])) ++place;
    if (place == FText.size() || FText[place] != quote) break;
    ++place;
    closed = place == FText.size() || FText[place] != quote;
    if (!closed) ++place;
  }
  FPos = place;
  lexem = FText.substr(FPrevPos, FPos - FPrevPos);
  if (!FQuotedStrings) lexem = lexem.substr(1, lexem.size() - (closed ? 2 : 1));
  return kString;
}

}  // namespace qrl
