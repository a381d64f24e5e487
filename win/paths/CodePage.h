// The source code page, in which form and unit sources without a byte order mark are written: a setting of
// the process, Windows-1252 unless it is changed. Also the classification of characters.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace win {

inline constexpr uint32_t kUtf8CodePage = 65001;

// Sets the source code page: 1250 to 1258, 437, 850, 852, 866, 874, 932, 936, 949, 950 or 65001. Returns
// false for any other number, and the setting is unchanged.
[[nodiscard]] bool SetACP(uint32_t codePage);
[[nodiscard]] uint32_t GetACP();
[[nodiscard]] const std::vector<uint32_t>& SupportedCodePages();

// Returns whether `byte` is a lead byte in the source code page: 81-9F and E0-FC in 932, 81-FE in 936, 949
// and 950. With a trail byte, 40-7E or 80-FE, after it the two are one character.
[[nodiscard]] bool IsDBCSLeadByte(uint8_t byte);
[[nodiscard]] inline bool IsDBCSTrailByte(uint8_t byte) {
  return (byte >= 0x40 && byte <= 0x7E) || (byte >= 0x80 && byte <= 0xFE);
}
[[nodiscard]] bool IsDoubleByteCodePage();

// Converts text of the source code page to UTF-8. Bytes that the code page lacks become U+FFFD.
[[nodiscard]] std::string SourceToUtf8(std::string_view text);

// The same for any code page of SupportedCodePages.
[[nodiscard]] bool IsDBCSLeadByteEx(uint32_t codePage, uint8_t byte);
[[nodiscard]] std::string CodePageToUtf8(uint32_t codePage, std::string_view text);

// Returns whether the single or double-byte character `bytes` of the source code page is alphabetic, as
// Windows' IsCharAlphaA does.
[[nodiscard]] bool IsCharAlphaA(std::string_view bytes);

}  // namespace win
