// A lexical scanner driven by tables. A subclass supplies the tables of its language.
//
// A lexem is the text of one token, as a view into the scanned text. White space and comments are tokens too,
// so the lexems of all tokens, put end to end, are the text, byte for byte (with QuotedStrings True). No text
// is an error: whatever fits nothing is a token of one byte.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qrl/HXTypes.h"

namespace qrl {

// Token codes beside those of the symbols and keywords, which are positive.
inline constexpr int kEndOfText = 0;
inline constexpr int kWhiteSpace = -101;  // the longest run of bytes 1 to 32
inline constexpr int kOther = -102;       // one byte that is nothing else
inline constexpr int kIdentifier = -103;  // a letter, `_` or a byte from 128 up, then those or digits
inline constexpr int kNumber = -104;      // a digit or `$`, then number characters
inline constexpr int kString =
    -106;  // closed by a quote, or by the end of its line; doubled quotes belong to it
inline constexpr int kComment = -108;  // {...}, (*...*) or //...; one that is not closed runs to the end
inline constexpr int kNul = -109;      // a byte 0

// What the scanner knows of a language: shared by all its instances, and never changed once made.
class TScannerTables {
 public:
  using TCharTest = bool (*)(uint8_t);
  struct TTests {
    TCharTest IsSymbol, IsNumber, IsStringQuote;
  };
  // Both lists are sorted already; keys of keywords are in upper case.
  TScannerTables(const TIntValueStringList& symbols, const TIntValueStringList& keywords, TTests tests);

 private:
  friend class TParser;
  enum class TKind : uint8_t { Nul, Blank, Name, Number, Quote, Symbol, Other };

  std::array<TKind, 256> FKind{};       // what a token that begins with the byte is
  std::array<bool, 256> FIsPassed{};    // a token of one byte, or white space: nothing to GetNextWord
  std::array<bool, 256> FNamePart{};    // continues an identifier
  std::array<bool, 256> FNumberPart{};  // continues a number
  std::array<int, 256> FSymbolCode{};
  const TIntValueStringList* FKeywords;
  std::array<uint32_t, 256>
      FKeywordLengths{};  // by first byte: bit n is set if a keyword of n letters begins so
};

class TParser {
 public:
  // Stands before the first character. `text` and `tables` must outlive the scanner.
  TParser(std::string_view text, const TScannerTables& tables) : FTables(tables), FText(text) {}

  // The next token's code, its text in `lexem`; kEndOfText with an empty lexem at the end.
  int GetNext(std::string_view& lexem);
  // The same, passing over all that is neither identifier, keyword nor comment. For who looks at nothing
  // else.
  int GetNextWord(std::string_view& lexem);
  // Where the token that GetNext gave last begins, in bytes from 0.
  size_t PrevPos() const { return FPrevPos; }
  // Goes on at `position`, in bytes from 0, as if the text began there.
  void SetPosition(size_t position) { FPos = position; }
  // Restarts on a new text; the options stay.
  void SetText(std::string_view text) { FText = text, FPos = 0, FPrevPos = 0; }

  // True: a string's lexem holds its quotes. False: it is what stands between them.
  void SetQuotedStrings(bool quoted) { FQuotedStrings = quoted; }
  // True: the text is in a double-byte source code page, and the two bytes of a character are never taken
  // apart.
  void SetDoubleByte(bool doubleByte) { FDoubleByte = doubleByte; }

 private:
  uint8_t At(size_t position) const {
    return position < FText.size() ? static_cast<uint8_t>(FText[position]) : 0;
  }
  bool IsPair(size_t position) const;
  bool SkipComment();
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
