// Converts between UTF-8, the program's own texts, and the UTF-16 of the system's functions.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace win {

// Returns the text as UTF-16, or nullopt if it is malformed.
[[nodiscard]] std::optional<std::wstring> ToWide(std::string_view utf8);
// The same; malformed bytes become U+FFFD.
[[nodiscard]] std::wstring ToWideOrReplaced(std::string_view utf8);

// Returns the text as UTF-8, or nullopt if it holds a lone surrogate, as a name on an NTFS volume may.
[[nodiscard]] std::optional<std::string> ToUtf8(std::wstring_view wide);
// The same; lone surrogates become U+FFFD.
[[nodiscard]] std::string ToUtf8OrReplaced(std::wstring_view wide);

}  // namespace win
