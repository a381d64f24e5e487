// From the binary form of an object stream (rtl/ObjectValues.h) to its text form, as the IDE writes it: two
// blanks a level, lines ended by CR LF.
//
// Every value comes back from the text as the very bytes that a writer would make of it
// (rtl/ObjectTextToBinary.h). The text has no way to say whether a number without a suffix was a double or an
// extended one, so a double ends in "E0", which no other number does.
//
// Data that is damaged, or that the text form cannot express, is refused: lengths are checked against what is
// there, nesting is limited (kMaxNesting), names must be names, UTF-8 must be well-formed, floating-point
// numbers finite.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/ObjectValues.h"
#include "rtl/text/Streams.h"

namespace rtl {

struct TBinaryTextOptions {
  bool ForPeople = false;  // how strings are spelled: rtl/FormTextPrinter.h
  bool Indented = true;    // blanks at the beginning of lines; text that nobody sees is shorter without
  size_t FirstOffset = 0;  // where in its file the data begins, for messages
};

// What the text does not say.
struct TBinaryInfo {
  size_t Size = 0;                    // bytes of the object data; what follows them was not read
  TValueType EmptyString = vaString;  // how the first empty string is stored, as all of a file are
  std::string ClassName;              // of the outermost object
};

// Appends the text of the object at the beginning of `binary` to `text`, which is flushed at the end. Raises
// EFilerError "Form data at offset N: REASON (object PATH, property PATH).", N counted from 0 in decimal; the
// sink then holds a part.
TBinaryInfo ObjectBinaryToText(std::string_view binary, TByteSink& text,
                               const TBinaryTextOptions& options = {});

// The same as a string.
std::string ObjectBinaryToText(std::string_view binary, const TBinaryTextOptions& options, TBinaryInfo& info);

// Reads the object at the position of `input`, which moves behind it, and writes the text at the position of
// `output`.
TBinaryInfo ObjectBinaryToText(TStream& input, TStream& output, const TBinaryTextOptions& options = {});

}  // namespace rtl
