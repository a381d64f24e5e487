// The code pages of Windows, held against the tables that the program has on other systems, which the build
// for those generates from ICU.
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "win/paths/CodePageTables.h"

namespace win {
namespace {

struct TDifference {
  uint32_t CodePage;
  int Bytes;
  int System, Table;  // U+FFFD: no character

  friend bool operator==(const TDifference&, const TDifference&) = default;
  friend void PrintTo(const TDifference& row, std::ostream* stream) {
    *stream << std::dec << row.CodePage << std::hex << " " << row.Bytes << ": " << row.System << ", "
            << row.Table << "\n";
  }
};

// What Wine and ICU see differently: the micro sign of 437, and bytes to which one of them gives no
// character, a control or a character for private use.
const std::vector<TDifference> kKnown = {
    {437, 0xE6, 0x00B5, 0x03BC},  {852, 0xAA, 0x00AC, 0xFFFD}, {874, 0xDB, 0xFFFD, 0xF8C1},
    {874, 0xDC, 0xFFFD, 0xF8C2},  {874, 0xDD, 0xFFFD, 0xF8C3}, {874, 0xDE, 0xFFFD, 0xF8C4},
    {874, 0xFC, 0xFFFD, 0xF8C5},  {874, 0xFD, 0xFFFD, 0xF8C6}, {874, 0xFE, 0xFFFD, 0xF8C7},
    {874, 0xFF, 0xFFFD, 0xF8C8},  {932, 0x80, 0x0080, 0xFFFD}, {936, 0xFF, 0xFFFD, 0xF8F5},
    {949, 0xFF, 0xFFFD, 0xF8F7},  {950, 0xFF, 0xFFFD, 0xF8F8}, {1253, 0xAA, 0xFFFD, 0x00AA},
    {1255, 0xCA, 0x05BA, 0xFFFD},
};

TEST(SystemCodePageTest, EveryByteAndEveryPair) {
  std::vector<TDifference> found;
  for (const TCodePageTable& table : kCodePageTables) {
    const TCodePageTable* const system = FindCodePageTable(table.Number);
    ASSERT_TRUE(system) << table.Number;
    ASSERT_EQ(system->Doubles == nullptr, table.Doubles == nullptr) << table.Number;
    const auto compare = [&](int bytes, char16_t left, char16_t right) {
      if (left != right) found.push_back({table.Number, bytes, left, right});
    };
    for (int byte = 0; byte < 0x80; ++byte) compare(0x80 + byte, system->Singles[byte], table.Singles[byte]);
    for (size_t i = 0; table.Doubles && i < (kLastLead - kFirstLead + 1) * kTrailCount; ++i) {
      const size_t bytes = (kFirstLead + i / kTrailCount) << 8 | (kFirstTrail + i % kTrailCount);
      compare(static_cast<int>(bytes), system->Doubles[i], table.Doubles[i]);
    }
  }
  EXPECT_EQ(found, kKnown);
}

}  // namespace
}  // namespace win
