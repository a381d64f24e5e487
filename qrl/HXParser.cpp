#include "qrl/HXParser.h"

#include <algorithm>

#include "win/CodePage.h"

namespace qrl {
namespace {

constexpr bool IsLetter(uint8_t c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
constexpr bool IsDigit(uint8_t c) {
  return c >= '0' && c <= '9';
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
    FKind[c] = c == 0                   ? TKind::Nul
               : c <= 32                ? TKind::Blank
               : tests.IsStringQuote(c) ? TKind::Quote
               : IsDigit(c) || c == '$' ? TKind::Number
               : FNamePart[c]           ? TKind::Name
               : tests.IsSymbol(c)      ? TKind::Symbol
                                        : TKind::Other;
    FSymbolCode[c] = kOther;
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
  using TKind = TScannerTables::TKind;
  const uint8_t first = At(FPos);
  int code = kOther;
  switch (FTables.FKind[first]) {
    case TKind::Quote:
      return ScanString(lexem);
    case TKind::Blank:
      while (FPos < FText.size() && FTables.FKind[At(FPos)] == TKind::Blank) ++FPos;
      code = kWhiteSpace;
      break;
    case TKind::Name: {
      SkipName();
      const size_t length = FPos - FPrevPos;
      code = kIdentifier;
      if (length < 32 && (FTables.FKeywordLengths[first] >> length & 1) != 0) {
        const int keyword = FTables.FKeywords->Lookup(FText.substr(FPrevPos, length));
        if (keyword != 0) code = keyword;
      }
      break;
    }
    case TKind::Number:
      while (FPos < FText.size() && FTables.FNumberPart[At(FPos)]) ++FPos;
      code = kNumber;
      break;
    case TKind::Symbol:
      code = ScanComment();
      if (code == kComment) break;
      ++FPos;
      code = FTables.FSymbolCode[first];
      break;
    case TKind::Nul:
      ++FPos;
      code = kNul;
      break;
    case TKind::Other:
      ++FPos;
      break;
  }
  lexem = FText.substr(FPrevPos, FPos - FPrevPos);
  return code;
}

// Whether a double-byte character begins at `position`.
bool TParser::IsPair(size_t position) const {
  return win::IsDBCSLeadByte(At(position)) && win::IsDBCSTrailByte(At(position + 1));
}

void TParser::SkipName() {
  while (FPos < FText.size()) {
    if (FDoubleByte && IsPair(FPos)) {
      FPos += 2;
    } else if (FTables.FNamePart[At(FPos)]) {
      ++FPos;
    } else {
      break;
    }
  }
}

// kComment, with the position behind it, if a comment begins here.
int TParser::ScanComment() {
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
    return kOther;
  }
  return kComment;
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

// No second byte of a double-byte character is a quote or a line end, so none needs to be told apart here.
int TParser::ScanString(std::string_view& lexem) {
  const auto quote = static_cast<char>(At(FPos));
  const char stops[] = {quote, '\r', '\n'};
  bool closed = false;
  ++FPos;
  while (true) {
    FPos = std::min(FText.find_first_of({stops, 3}, FPos), FText.size());
    if (FPos == FText.size() || FText[FPos] != quote) break;
    ++FPos;
    if (FPos == FText.size() || FText[FPos] != quote) {
      closed = true;
      break;
    }
    ++FPos;
  }
  lexem = FText.substr(FPrevPos, FPos - FPrevPos);
  if (!FQuotedStrings) lexem = lexem.substr(1, lexem.size() - (closed ? 2 : 1));
  return kString;
}

}  // namespace qrl
