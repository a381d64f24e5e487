// A lexical scanner driven by tables. A subclass supplies the tables of its language
// (MigWizard/engine/PasParser.h).
//
// A lexem is the text of one token, as a view into the scanned text. White space and comments are tokens too,
// so the concatenated lexems of all tokens are the text, byte for byte (with QuotedStrings True). No text is
// an error: a byte that starts no other token is a token of its own.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qrl/HXTypes.h"

namespace qrl {

// Token codes besides those of the symbols and keywords, which are positive.
inline constexpr int kEndOfText = 0;
inline constexpr int kWhiteSpace = -101;  // the longest run of bytes from 1 to 32
inline constexpr int kOther = -102;       // one byte that starts no other token
inline constexpr int kIdentifier = -103;  // a letter, `_` or a byte from 128 up, then those or digits
inline constexpr int kNumber = -104;      // a digit or `$`, then number characters
inline constexpr int kString = -106;  // up to its closing quote, or the end of its line; '' does not end it
inline constexpr int kComment =
    -108;  // {...}, (*...*) or //...; one that is not closed extends to the end of the text
inline constexpr int kNul = -109;  // a byte 0

// The tables of a language: immutable, and shared by all its scanners.
class TScannerTables {
 public:
  using TCharTest = bool (*)(uint8_t);
  struct TTests {
    TCharTest IsSymbol, IsNumber, IsStringQuote;
  };
  // Both lists must be sorted, with the keywords in upper case. `keywords` must outlive the tables.
  TScannerTables(const TIntValueStringList& symbols, const TIntValueStringList& keywords, TTests tests);

 private:
  friend class TParser;
  enum class TTokenStart : uint8_t { Nul, Blank, Name, Number, Quote, Symbol, Other };

  // All indexed by byte value.
  std::array<TTokenStart, 256> FStart{};  // the kind of token that starts with the byte
  std::array<bool, 256> FIsPassed{};    // starts white space or a token of one byte, which GetNextWord skips
  std::array<bool, 256> FNamePart{};    // continues an identifier
  std::array<bool, 256> FNumberPart{};  // continues a number
  std::array<int, 256> FSymbolCode{};
  std::array<uint32_t, 256> FKeywordLengths{};  // bit n is set if a keyword of n letters starts with the byte
  const TIntValueStringList* FKeywords;
};

class TParser {
 public:
  // Starts before the first character. `text` and `tables` must outlive the scanner.
  TParser(std::string_view text, const TScannerTables& tables) : FTables(tables), FText(text) {}

  // Returns the code of the next token and sets `lexem`. At the end returns kEndOfText with an empty lexem.
  int GetNext(std::string_view& lexem);
  // The same for the next identifier, keyword or comment. Faster than GetNext if other tokens are not needed.
  int GetNextWord(std::string_view& lexem);
  // Returns the offset of the last returned token, in bytes from 0.
  size_t PrevPos() const { return FPrevPos; }
  // Continues at the offset `position`, in bytes from 0, as if the text began there.
  void SetPosition(size_t position) { FPos = position; }
  // Restarts on a new text and keeps the options.
  void SetText(std::string_view text) { FText = text, FPos = 0, FPrevPos = 0; }

  // True: the lexem of a string includes its quotes. False: it is the text between them.
  void SetQuotedStrings(bool quoted) { FQuotedStrings = quoted; }
  // True: the text is in a double-byte source code page, and the two bytes of a character are never
  // separated.
  void SetDoubleByte(bool doubleByte) { FDoubleByte = doubleByte; }

 private:
  uint8_t At(size_t position) const {
    return position < FText.size() ? static_cast<uint8_t>(FText[position]) : 0;
  }
  bool IsPair(size_t position) const;
  bool SkipComment();
  int ScanName(std::string_view& lexem);
  int ScanString(std::string_view& lexem);
  void SkipBraces();
  void SkipDoubleByteName();

  const TScannerTables& FTables;
  std::string_view FText;
  size_t FPos = 0;
  size_t FPrevPos = 0;
  bool FQuotedStrings = true;
  bool FDoubleByte = false;
};

}  // namespace qrl
