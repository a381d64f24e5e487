// From the text form of an object stream to its binary form (rtl/ObjectValues.h): everything that the IDE's
// reader accepts, with every value in the smallest kind that holds it, as the IDE's writer stores it.
//
//   integers  the smallest of 8, 16, 32 and 64 bits
//   strings   up to 255 bytes a short one, above that a long one; a wide one (a code above 127, or not ASCII
//   in UTF-8
//             text) as UTF-8 where that is shorter than UTF-16, else as UTF-16
//   numbers   with a fraction or an exponent: extended; with the exponent "E0" a double
//   (rtl/ObjectBinaryToText.h says
//             why); with the suffix s, d or c a single, a date or a currency value
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/ObjectValues.h"
#include "rtl/text/Streams.h"

namespace rtl {

struct TTextBinaryOptions {
  TValueType EmptyString = vaString;  // vaString, vaLString, vaWString or vaUTF8String: how '' is stored
  bool Utf8 = false;                  // bytes from 128 up are UTF-8; a mark at the beginning says the same
};

// What the binary form has no use for.
struct TTextInfo {
  size_t Size = 0;        // bytes up to the end of the object; what follows was not read
  std::string ClassName;  // of the outermost object
};

// Appends the binary form of the object in `text` to `binary`, which is flushed at the end. Raises
// EParserError "Form text, line N: REASON (object PATH, property PATH).", N counted from 1; the sink then
// holds a part.
TTextInfo ObjectTextToBinary(std::string_view text, TByteSink& binary,
                             const TTextBinaryOptions& options = {});

// The same as a string.
std::string ObjectTextToBinary(std::string_view text, const TTextBinaryOptions& options, TTextInfo& info);

// Reads from the position of `input` to its end, and writes at the position of `output`.
TTextInfo ObjectTextToBinary(TStream& input, TStream& output, const TTextBinaryOptions& options = {});

}  // namespace rtl
