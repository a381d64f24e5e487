// File names as Windows compares and sorts them, without regard to case, whatever the host.
#pragma once

#include <string>
#include <string_view>

namespace win {

// Returns a file name in upper case, by the Unicode simple case mapping. Malformed bytes are kept.
[[nodiscard]] std::string UpperFileName(std::string_view utf8);
// Compares two UTF-8 texts by their UTF-16 units. Returns a negative number, 0 or a positive number.
[[nodiscard]] int CompareUtf16Order(std::string_view left, std::string_view right);
// Returns whether `left` comes before `right` in NTFS' order: upper-cased names by UTF-16 unit, then exact
// names by UTF-16 unit.
[[nodiscard]] bool FileNameLess(std::string_view left, std::string_view right);
[[nodiscard]] bool IsValidUtf8(std::string_view text);

}  // namespace win
