// Reads form text token by token, as the IDE's reader does: names, numbers, strings with their codes and
// concatenations, hexadecimal data. All characters from 1 to 32 between tokens are white space, line ends
// included. It decodes values and refuses what no form holds; the scanner of the passes (PasParser.h) keeps
// every byte as it is and accepts any text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/FormPath.h"
#include "rtl/objects/ObjectValues.h"

namespace rtl {

// The type of a number, which follows from its fraction, exponent and suffix.
enum class TNumberType { Integer, Extended, Double, Single, Date, Currency };

struct TFormNumber {
  TNumberType Type;
  TStoredInteger Integer;  // of an integer; each leading zero of a decimal one adds to ExtraWidth
  std::string_view Text;   // of an integer as written; of others [sign] digits [. digits] [E [sign] digits]
};

// A string is wide if it holds a code above 127 or, in UTF-8 text, a character that is not ASCII.
struct TFormString {
  bool Wide;
  std::string_view Bytes;     // of a narrow string, in the source code page
  std::u16string_view Units;  // of a wide string
};

class TFormTextScanner {
 public:
  // `text` and `path` must outlive the scanner. Bytes from 128 up in strings are UTF-8 if `utf8` is set or
  // the text begins with the mark EF BB BF, else in the source code page.
  TFormTextScanner(std::string_view text, bool utf8, const TFormPath& path);

  // Raises EParserError "Form text, line N: REASON (object PATH, property PATH)." for the current position.
  [[noreturn]] void Fail(std::string_view reason) const;
  // Returns the number of bytes before the current position.
  size_t Offset() const { return static_cast<size_t>(FNext - FBegin); }

  // Skips white space. Returns the character that follows, or 0 at the end of the text.
  char Peek() {
    while (FNext != FEnd && *FNext >= 1 && *FNext <= 32) ++FNext;
    return FNext != FEnd ? *FNext : '\0';
  }
  // Skips white space and `character`. Returns false if another character comes next.
  [[nodiscard]] bool Accept(char character) {
    if (Peek() != character) return false;
    ++FNext;
    return true;
  }
  // The same, but fails if another character comes next.
  void Expect(char character);

  // Reads a name, and further names that follow after dots without white space. Fails, naming `what`, if no
  // name comes next.
  std::string_view Name(std::string_view what);
  // Returns the whole name of a property of which `first` was just read: names after dots that have white
  // space around them belong to it. Valid until the next call.
  std::string_view PropertyName(std::string_view first);
  // Skips `keyword`, such as an object's `end`. Returns false if it does not come next, or is the name of a
  // property here.
  [[nodiscard]] bool AcceptKeyword(std::string_view keyword) {
    return (Peek() | 0x20) == keyword[0] && AcceptWholeKeyword(keyword);
  }

  // Each of the operations below reads a value; Peek must have returned its first character.
  TFormNumber Number();
  TFormString String();  // with all parts that are concatenated; valid until the next call
  // Returns the number of bytes of the hexadecimal data in braces that comes next, and does not move.
  size_t BinaryLength() const;
  void Binary(TByteSink& sink);

 private:
  bool AcceptWholeKeyword(std::string_view keyword);
  std::string_view ScanName();
  void ScanDigits();
  TFormNumber IntegerOf(std::string_view text);
  std::string_view QuotedPiece();
  uint32_t CodePiece();
  bool AtPiece() const { return FNext != FEnd && (*FNext == '\'' || *FNext == '#'); }
  bool AcceptConcatenation();
  bool NarrowString();
  void WideString();
  void AppendRaw();

  const char* FBegin;
  const char* FNext;
  const char* FEnd;
  bool FUtf8;
  const TFormPath& FPath;
  std::string FJoinedName;
  std::string FBytes;  // of the string: all of a narrow one, or the quoted bytes that are not yet in FUnits
  std::u16string FUnits;
};

}  // namespace rtl
