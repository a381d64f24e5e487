// The names that findings look for in a unit, and the words of the language that tell where they are, in one
// table. It is looked up once for every identifier of a unit, so it rejects nearly all of them by a few bits.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TNameTable {
 public:
  TNameTable();

  // Adds `flags`, which must not be 0, to those of a name. The case of ASCII letters is ignored.
  void Add(std::string_view name, uint32_t flags);
  // Adds `flags` to those of every name that begins with `prefix`, of two bytes or more.
  void AddPrefix(std::string_view prefix, uint32_t flags);

  // Returns the flags of a name that is not empty, or 0 if it is not in the table.
  uint32_t Find(std::string_view name) const {
    const size_t start = StartOf(name);
    uint32_t flags = FPrefixStarts[start] ? FindPrefix(name) : 0;
    if (FStarts[start] && FEnds[EndOf(name)]) flags |= Search(name);
    return flags;
  }

 private:
  struct TEntry {
    std::string Name;
    uint32_t Flags = 0;
  };

  // Both are the same for both cases of a letter, and for some other bytes.
  static size_t StartOf(std::string_view name) {
    const auto second = static_cast<uint8_t>(name.size() > 1 ? name[1] : 0);
    return (static_cast<uint8_t>(name[0]) & 0x1FU) << 5 | (second & 0x1FU);
  }
  static size_t EndOf(std::string_view name) {
    return (static_cast<uint8_t>(name.back()) & 0x1FU) << 5 | (name.size() & 0x1FU);
  }
  static size_t HashOf(std::string_view name);
  size_t SlotOf(std::string_view name) const;
  uint32_t Search(std::string_view name) const;
  uint32_t FindPrefix(std::string_view name) const;
  void Grow();

  std::bitset<1024> FStarts, FEnds, FPrefixStarts;
  std::vector<TEntry> FEntries, FPrefixes;
  std::vector<uint16_t> FSlots;  // by hash: index of an entry plus 1, or 0; open addressing
};

}  // namespace mig
