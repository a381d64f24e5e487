// Reads form text token by token, as the IDE's reader understands it: names, numbers, strings with their
// codes and concatenations, hexadecimal data. Everything from code 1 to 32 between tokens is white space,
// line ends included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/FormPath.h"

namespace rtl {

// What the digits, the fraction, the exponent and the suffix of a number make it.
enum class TNumberKind { Integer, Extended, Double, Single, Date, Currency };

struct TFormNumber {
  TNumberKind Kind;
  int64_t Integer;        // of an integer
  std::string_view Text;  // of all others: [sign] digits [. digits] [E [sign] digits], without the suffix
};

// A string is wide if it holds a code above 127, or, in UTF-8 text, anything that is not ASCII.
struct TFormString {
  bool Wide;
  std::string_view Bytes;     // of a narrow one, in the code page of the source
  std::u16string_view Units;  // of a wide one
};

class TFormTextScanner {
 public:
  // `text` and `path` must live as long. `utf8` says how bytes from 128 up in strings are meant: as UTF-8, or
  // in the source code page. A mark EF BB BF in front means the former.
  TFormTextScanner(std::string_view text, bool utf8, const TFormPath& path);

  // Raises EParserError "Form text, line N: REASON (object PATH, property PATH)." for the present position.
  [[noreturn]] void Fail(std::string_view reason) const;
  // Bytes of the text before the present position.
  size_t Offset() const { return static_cast<size_t>(FNext - FBegin); }

  // Moves over white space. The character there, or 0 at the end of the text.
  char Peek() {
    while (FNext != FEnd && *FNext >= 1 && *FNext <= 32) ++FNext;
    return FNext != FEnd ? *FNext : '\0';
  }
  // Takes `character` if it comes next.
  [[nodiscard]] bool Accept(char character) {
    if (Peek() != character) return false;
    ++FNext;
    return true;
  }
  // Takes it, or fails with what was expected.
  void Expect(char character);

  // The name that comes next, with further ones behind dots if they follow at once. Fails, naming `what`, if
  // there is none.
  std::string_view Name(std::string_view what);
  // The name of a property, of which `first` was just read, with what follows it behind dots that have white
  // space around them. Valid until the next call.
  std::string_view PropertyName(std::string_view first);
  // Whether an object's `end`, or the keyword of one, comes next and not a property of that name. Takes it.
  [[nodiscard]] bool AcceptKeyword(std::string_view keyword) {
    return (Peek() | 0x20) == keyword[0] && AcceptWholeKeyword(keyword);
  }

  // Each of these reads what its first character, already peeked, has announced.
  TFormNumber Number();
  TFormString String();  // with all that is concatenated to it; valid until the next call
  // The data between braces: its length first, so that it can be written in front of it, then the bytes.
  size_t BinaryLength() const;
  void Binary(TByteSink& sink);

 private:
  bool AcceptWholeKeyword(std::string_view keyword);
  std::string_view ScanName();
  void ScanDigits();
  int64_t IntegerOf(std::string_view text);
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
  std::string FBytes;  // of the string being read: all that is narrow, or the quoted bytes not yet made wide
  std::u16string FUnits;
};

}  // namespace rtl
