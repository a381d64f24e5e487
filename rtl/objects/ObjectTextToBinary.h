// Converts the text form of an object stream to its binary form (rtl/objects/ObjectValues.h). Accepts
// everything that the IDE's reader accepts, and stores each value in the smallest kind that holds it, as the
// IDE's writer does:
//
//   integers  The smallest of 8, 16, 32 and 64 bits. Each leading zero of a decimal integer chooses the
//             next wider kind.
//   strings   Up to 255 bytes a short string, above that a long one. A wide string (one with a code above
//             127 or, in UTF-8 text, with a character that is not ASCII) is stored as UTF-8 if that is
//             shorter than UTF-16, else as UTF-16.
//   numbers   With a fraction or an exponent: extended. With the exponent "E0": double. With the suffix s, d
//             or c: single, date or currency. The bits of values without a decimal text:
//             rtl/objects/FloatBits.h.
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
  bool Utf8 = false;                  // bytes from 128 up are UTF-8, as they are after a byte order mark
};

// Properties of the text that the binary form does not show.
struct TTextInfo {
  size_t Size = 0;        // bytes up to the end of the object; bytes after it are not read
  std::string ClassName;  // of the outermost object
};

// Appends the binary form of the object in `text` to `binary`, and flushes it. Raises EParserError "Form
// text, line N: REASON (object PATH, property PATH).", where N counts from 1; a part of the data has been
// written then.
TTextInfo ObjectTextToBinary(std::string_view text, TByteSink& binary,
                             const TTextBinaryOptions& options = {});

// Returns the binary form as a string.
std::string ObjectTextToBinary(std::string_view text, const TTextBinaryOptions& options, TTextInfo& info);

// Reads from the position of `input` to its end, and writes at the position of `output`.
TTextInfo ObjectTextToBinary(TStream& input, TStream& output, const TTextBinaryOptions& options = {});

}  // namespace rtl
