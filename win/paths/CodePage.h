// The source code page: the code page in which form and unit sources without a mark are written. A setting of
// the process, Windows-1252 unless it is changed. And the few questions about characters that depend on
// tables.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace win {

// 1250 to 1258, 437, 850, 852, 866, 874, 932, 936, 949, 950 and 65001. Any other number is refused with
// False, and the setting stays.
[[nodiscard]] bool SetACP(uint32_t codePage);
[[nodiscard]] uint32_t GetACP();
[[nodiscard]] const std::vector<uint32_t>& SupportedCodePages();

// True if `byte` begins a double-byte character in the source code page: 81-9F and E0-FC in 932, 81-FE in
// 936, 949 and 950. The byte behind it must be in 40-7E or 80-FE for the two to be one character.
[[nodiscard]] bool IsDBCSLeadByte(uint8_t byte);
[[nodiscard]] inline bool IsDBCSTrailByte(uint8_t byte) {
  return (byte >= 0x40 && byte <= 0x7E) || (byte >= 0x80 && byte <= 0xFE);
}
[[nodiscard]] bool IsDoubleByteCodePage();

// Text of the source code page as UTF-8. Bytes that the code page lacks come out as U+FFFD.
[[nodiscard]] std::string SourceToUtf8(std::string_view text);

// Windows' IsCharAlphaA for the single or double-byte character `bytes` of the source code page.
[[nodiscard]] bool IsCharAlphaA(std::string_view bytes);
// The same question about a Unicode character.
[[nodiscard]] bool IsCharAlphaU(char32_t character);

// Upper case for file names: one character to one, by the Unicode simple mapping. Malformed bytes stay as
// they are.
[[nodiscard]] std::string UpperFileName(std::string_view utf8);
// Negative, 0 or positive: two UTF-8 texts in the order of their UTF-16 units.
[[nodiscard]] int CompareUtf16Order(std::string_view left, std::string_view right);
// Less than, as NTFS sorts: upper-cased names by UTF-16 unit, then the exact names by UTF-16 unit.
[[nodiscard]] bool FileNameLess(std::string_view left, std::string_view right);
[[nodiscard]] bool IsValidUtf8(std::string_view text);

}  // namespace win
