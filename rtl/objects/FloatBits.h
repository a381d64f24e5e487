// The text of floating-point values that have no decimal text: infinities, NaNs with their payloads, and
// extended numbers that are not normalised. Some writers store such values, and a form that holds one must
// come back from its text with the same bytes.
//
// The text is a number of the form language that is too large for every format: the bits as one or two
// integers, and an exponent that names the kind of value. The bytes 00 00 00 00 00 00 00 80 00 00 of a
// vaExtended (a mantissa with its leading bit set, under the exponent 0) are "9223372036854775808.0E100005".
// Only this program reads such text; text for people never contains it.
#pragma once

#include <string>
#include <string_view>

#include "rtl/objects/ObjectValues.h"

namespace rtl {

// Returns the text of `bytes`, a value of `kind`: vaExtended, vaSingle, vaDate or vaDouble.
std::string FormatFloatBits(TValueType kind, std::string_view bytes);

// Reads a text that FormatFloatBits has written: sets `kind` and `bytes`. Returns false for any other text,
// that of values which have a decimal text included.
[[nodiscard]] bool ParseFloatBits(std::string_view text, TValueType& kind, std::string& bytes);

}  // namespace rtl
