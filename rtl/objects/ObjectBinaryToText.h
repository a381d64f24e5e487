// Converts the binary form of an object stream (rtl/objects/ObjectValues.h) to its text form, as the IDE
// writes it: two blanks a level, lines ended by CR LF.
//
//   rtl::TBinaryInfo info;
//   const std::string text = rtl::ObjectBinaryToText(binary, {.ForPeople = true}, info);
//
// Numbers come back from the text with the same bytes (rtl/objects/ObjectTextToBinary.h), by these
// conventions:
//   - A number without a suffix is extended. A double ends in "E0", which no other number does.
//   - An integer that is stored wider than it needs has one leading zero for each wider kind: 5 in 32 bits is
//     "005".
//   - A floating-point value that has no decimal text is written as its bits (rtl/objects/FloatBits.h) in
//     text that stays in memory. Text for people cannot express it, and the conversion fails.
//
// Data that is damaged, or that the text form cannot express, is refused: lengths are checked against the
// bytes that are left, nesting is limited (kMaxNesting), names must be names, UTF-8 must be well-formed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/ObjectValues.h"
#include "rtl/text/Streams.h"

namespace rtl {

struct TBinaryTextOptions {
  bool ForPeople = false;  // the spelling for files rather than for memory: rtl/objects/FormTextPrinter.h
  bool Indented = true;    // with blanks at the beginning of lines; text in memory is shorter without
  size_t FirstOffset = 0;  // the offset of the data in its file, for messages
};

// Properties of the data that the text does not show.
struct TBinaryInfo {
  size_t Size = 0;                    // bytes of the object data; bytes after it are not read
  TValueType EmptyString = vaString;  // how the first empty string is stored; one file stores all alike
  std::string ClassName;              // of the outermost object
};

// Appends the text of the object at the beginning of `binary` to `text`, and flushes it. Raises EFilerError
// "Form data at offset N: REASON (object PATH, property PATH).", where N is decimal and counts from 0; a part
// of the text has been written then.
TBinaryInfo ObjectBinaryToText(std::string_view binary, TByteSink& text,
                               const TBinaryTextOptions& options = {});

// Returns the text as a string.
std::string ObjectBinaryToText(std::string_view binary, const TBinaryTextOptions& options, TBinaryInfo& info);

// Reads the object at the position of `input`, moves past it, and writes the text at the position of
// `output`.
TBinaryInfo ObjectBinaryToText(TStream& input, TStream& output, const TBinaryTextOptions& options = {});

}  // namespace rtl
