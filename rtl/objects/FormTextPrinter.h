// Writes form text as the IDE does, value by value, to a sink: indentation, numbers, strings, hexadecimal
// data.
//
// Strings have two spellings. In text that stays in memory a string is one piece of any length, and a quote
// in it is doubled. In text for people a string of more than 64 characters begins on a line of its own and is
// broken after every 64th character with " +", and a quote is written as #39.
#pragma once

#include <cstdint>
#include <string_view>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/FloatText.h"
#include "rtl/objects/ObjectValues.h"

namespace rtl {

class TFormTextPrinter {
 public:
  // Does not own `sink`. Unless `indented` is set, every line begins in the first column.
  TFormTextPrinter(TByteSink& sink, bool forPeople, bool indented)
      : FSink(sink), FForPeople(forPeople), FDeepest(indented ? kDeepest : 0) {}

  void Text(std::string_view text) { FSink.Append(text); }
  // Writes CR LF.
  void EndLine() { FSink.Append("\r\n"); }
  // Writes two blanks a level, for at most kDeepest levels, so that the size of the text is proportional to
  // that of the data however deeply it nests.
  void Indent(size_t level);
  static constexpr size_t kDeepest = 128;

  // Writes the indentation, the name, which has at most 255 bytes, and " = ".
  void PropertyName(size_t level, std::string_view name);

  void Integer(const TStoredInteger& integer);
  void Float(const TFloat& value, const TFloatFormat& format, TFloatStyle style) {
    FSink.Append(FormatFloat(value, format, style));
  }
  // `bytes` are in the source code page. `level` is the indentation of the line on which the string begins.
  void NarrowString(std::string_view bytes, size_t level);
  // `units` are UTF-16.
  void WideString(std::u16string_view units, size_t level);
  // Writes 32 bytes a line between braces; up to 31 bytes stay on the line of the opening brace.
  void Binary(std::string_view bytes, size_t level);

 private:
  template <typename TUnits>
  void BrokenString(const TUnits& units, size_t level);
  void Line(std::string_view bytes);
  void Line(std::u16string_view units);
  void Code(unsigned code);
  char* Blanks(char* out, size_t level) const;

  TByteSink& FSink;
  const bool FForPeople;
  const size_t FDeepest;  // the number of levels that are indented
};

}  // namespace rtl
