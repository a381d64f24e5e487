// Form text as the IDE writes it, value by value, into a sink: indentation, numbers, strings, hexadecimal
// data.
//
// There are two spellings of strings. In memory, where the text is only a way station, a string is one piece
// whatever its length, and a quote in it is doubled. For people, a string of more than 64 characters begins
// on a line of its own and is broken after every 64th with " +", and a quote is #39.
#pragma once

#include <cstdint>
#include <string_view>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/FloatText.h"

namespace rtl {

class TFormTextPrinter {
 public:
  // Does not own `sink`. Without `indented` every line begins in the first column.
  TFormTextPrinter(TByteSink& sink, bool forPeople, bool indented)
      : FSink(sink), FForPeople(forPeople), FDeepest(indented ? kDeepest : 0) {}

  void Text(std::string_view text) { FSink.Append(text); }
  // CR LF.
  void EndLine() { FSink.Append("\r\n"); }
  // Two blanks a level, and no more than kDeepest levels of them: text stays in proportion to the data
  // however deep it nests.
  void Indent(size_t level);
  static constexpr size_t kDeepest = 128;

  // The indentation, the name, which has no more than 255 bytes, and " = ".
  void PropertyName(size_t level, std::string_view name);

  void Integer(int64_t value);
  void Float(const TFloat& value, const TFloatFormat& format, TFloatStyle style) {
    FSink.Append(FormatFloat(value, format, style));
  }
  // Bytes of the source code page. `level` is that of the line on which the string begins.
  void NarrowString(std::string_view bytes, size_t level);
  // UTF-16 units.
  void WideString(std::u16string_view units, size_t level);
  // The braces with 32 bytes a line between them; up to 31 bytes stay on the line of the opening one.
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
  const size_t FDeepest;  // levels that are indented
};

}  // namespace rtl
