#include "MigWizard/engine/PasParser.h"

#include "win/paths/CodePage.h"

namespace mig {
namespace {

struct TLexemCode {
  const char* Lexem;
  int Code;
};

constexpr TLexemCode kSymbols[] = {
    {"!", 1},  {"\"", 2}, {"#", 3},  {"%", 4},  {"&", 5},   {"'", 6},  {"(", 7},  {")", 8},  {"*", 9},
    {"+", 10}, {",", 11}, {"-", 12}, {".", 13}, {"/", 14},  {":", 15}, {";", 16}, {"<", 17}, {"=", 18},
    {">", 19}, {"?", 20}, {"@", 21}, {"[", 22}, {"\\", 23}, {"]", 24}, {"^", 25}, {"_", 26}, {"`", 27},
};

constexpr TLexemCode kKeywords[] = {
    {"END", kEnd},   {"INHERITED", kInherited}, {"INLINE", kInline},
    {"ITEM", kItem}, {"OBJECT", kObject},       {"USES", kUses},
};

template <size_t N>
qrl::TIntValueStringList SortedList(const TLexemCode (&lexems)[N]) {
  qrl::TIntValueStringList list;
  for (const TLexemCode& entry : lexems) list.Add(entry.Lexem, entry.Code);
  list.Sort();
  return list;
}

bool IsSymbol(uint8_t c) {
  return c != '$' && ((c >= 33 && c <= 47) || (c >= 58 && c <= 64) || (c >= 91 && c <= 94) || c == 96 ||
                      (c >= 123 && c <= 126));
}

bool IsNumber(uint8_t c) {
  return c == '$' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool IsStringQuote(uint8_t c) {
  return c == '\'';
}

const qrl::TScannerTables& Tables() {
  static const qrl::TIntValueStringList symbolLexems = SortedList(kSymbols);
  static const qrl::TIntValueStringList keywordLexems = SortedList(kKeywords);
  static const qrl::TScannerTables tables(symbolLexems, keywordLexems, {IsSymbol, IsNumber, IsStringQuote});
  return tables;
}

}  // namespace

TPasParser::TPasParser(std::string_view text) : TParser(text, Tables()) {}

TPasParser::TPasParser(std::string_view text, const qrl::TEncoding& encoding) : TPasParser(text) {
  SetDoubleByte(encoding == qrl::TEncoding::Default() && win::IsDoubleByteCodePage());
}

}  // namespace mig
