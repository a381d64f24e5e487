// UTF-8 and UTF-16 units, for the wide strings of forms. Lone surrogates are kept: a unit of its own has the
// three bytes that the scheme of UTF-8 gives its number.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rtl {

enum class TSurrogates { Allow, Refuse };

// Appends the units of `utf8` to `units`. The offset of the first byte of what is malformed, or npos; a
// surrogate of its own in three bytes is malformed if `surrogates` is Refuse.
size_t Utf8ToUtf16(std::string_view utf8, TSurrogates surrogates, std::u16string& units);

// Bytes that the units take as UTF-8, or npos if there is a lone surrogate among them.
size_t Utf8Length(std::u16string_view units);

// Appends well-formed units, of which Utf8Length is not npos.
void Utf16ToUtf8(std::u16string_view units, std::string& utf8);

}  // namespace rtl
