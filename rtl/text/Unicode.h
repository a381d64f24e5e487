// Conversion between UTF-8 and UTF-16. Lone surrogates are kept: each has the three bytes that the scheme of
// UTF-8 gives its number (Simon Sapin, "The WTF-8 encoding").
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace rtl {

enum class TSurrogates { Allow, Refuse };

// Appends the UTF-16 units of `utf8` to `units`. Returns the offset of the first malformed sequence, up to
// which the units were appended, or npos if there is none. With Refuse the three bytes of a lone surrogate
// are malformed.
[[nodiscard]] size_t Utf8ToUtf16(std::string_view utf8, TSurrogates surrogates, std::u16string& units);

// Returns the number of bytes that the units take in UTF-8, or npos if a lone surrogate is among them.
size_t Utf8Length(std::u16string_view units);

// Appends the UTF-8 of `units`.
void Utf16ToUtf8(std::u16string_view units, std::string& utf8);

// Returns the number of bytes of the first character of `utf8`, which must not be empty: the first byte and
// all continuation bytes after it, whether well-formed or not.
inline size_t CharacterLength(std::string_view utf8) {
  size_t length = 1;
  while (length < utf8.size() && (utf8[length] & 0xC0) == 0x80) ++length;
  return length;
}

}  // namespace rtl
