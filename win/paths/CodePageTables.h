// The characters of the code pages that SetACP() accepts, except for 65001. The tables are generated when the program
// is built, by MakeCodePageTables.cpp, so that the program itself does not need ICU's 30 MB of data.
#pragma once

#include <cstddef>
#include <cstdint>

namespace win {

// The bytes that a table of double-byte characters covers. Each code page uses a part of them.
constexpr uint8_t kFirstLead = 0x81;
constexpr uint8_t kLastLead = 0xFE;
constexpr uint8_t kFirstTrail = 0x40;
constexpr uint8_t kLastTrail = 0xFE;
constexpr size_t kTrailCount = kLastTrail - kFirstTrail + 1;

struct TCodePageTable {
  uint32_t Number;
  const char16_t* Singles;  // of the bytes 0x80 to 0xFF; U+FFFD where the code page has no character
  const char16_t* Doubles;  // kTrailCount characters for each lead byte; null in a single-byte code page
};

// In ascending order of their numbers.
constexpr size_t kCodePageTableCount = 18;
extern const TCodePageTable kCodePageTables[kCodePageTableCount];

}  // namespace win
