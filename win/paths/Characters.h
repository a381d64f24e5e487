// Properties of characters and code pages. Each host's folder defines these functions: by ICU and tables that
// are generated when the program is built (win/posix), or by the system's own functions (win/windows).
#pragma once

#include <cstddef>
#include <cstdint>

namespace win {

// The characters of a code page, for the bytes that are not ASCII.
struct TCodePageTable {
  uint32_t Number;
  const char16_t* Singles;  // of the bytes 0x80 to 0xFF; U+FFFD where the code page has no character
  const char16_t* Doubles;  // kTrailCount characters for each lead byte; null in a single-byte code page
};

// The bytes that a table of double-byte characters covers. Each code page uses a part of them.
constexpr uint8_t kFirstLead = 0x81;
constexpr uint8_t kLastLead = 0xFE;
constexpr uint8_t kFirstTrail = 0x40;
constexpr uint8_t kLastTrail = 0xFE;
constexpr size_t kTrailCount = kLastTrail - kFirstTrail + 1;

// The code pages that have a table, in ascending order.
constexpr size_t kCodePageTableCount = 18;
constexpr uint32_t kCodePageNumbers[kCodePageTableCount] = {
    437, 850, 852, 866, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258};

// Returns the table of a code page, or null if `number` is none of kCodePageNumbers. The table lives as
// long as the process. May be called by several threads.
[[nodiscard]] const TCodePageTable* FindCodePageTable(uint32_t number);

// Returns the character in upper case, by a mapping of one character to one; itself if it has none.
[[nodiscard]] char32_t UpperCharacter(char32_t character);

// Returns whether the character is alphabetic, as Windows' IsCharAlpha does.
[[nodiscard]] bool IsCharAlphaU(char32_t character);

}  // namespace win
