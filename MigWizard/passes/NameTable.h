// A table of identifiers, ignoring the case of ASCII letters. It is looked up for every identifier of a unit,
// and rejects nearly all that it does not have by a few bits.
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

  // Returns the flags of a name, or 0 if it is empty or not in the table.
  uint32_t Find(std::string_view name) const {
    if (name.empty()) return 0;
    const bool mayHavePrefix = (FPrefixLetters >> Fold(name[0]) & 1U) != 0 && FPrefixStarts[StartOf(name)];
    uint32_t flags = mayHavePrefix ? FindPrefix(name) : 0;
    if (FShapes[ShapeOf(KeyOf(name))]) flags |= Search(name);
    return flags;
  }

 private:
  struct TEntry {
    std::string Name;  // in lower case
    uint32_t Flags = 0;
  };

  // All are the same for both cases of a letter, and for some other bytes.
  static size_t Fold(char c) { return static_cast<uint8_t>(c) & 0x1FU; }
  static size_t StartOf(std::string_view name) {
    return Fold(name[0]) << 5 | (name.size() > 1 ? Fold(name[1]) : 0);
  }
  // The first two bytes, the last one, and the length.
  static size_t KeyOf(std::string_view name) {
    return StartOf(name) << 10 | Fold(name.back()) << 5 | (name.size() & 0x1FU);
  }
  // A hash of the key. Names in programs resemble each other, and their keys alone would leave too many.
  static size_t ShapeOf(size_t key) { return key * 0x9E3779B1U >> 12 & 0x7FFFU; }
  size_t SlotOf(std::string_view name) const;
  uint32_t Search(std::string_view name) const;
  uint32_t FindPrefix(std::string_view name) const;
  void Grow();

  std::bitset<32768> FShapes;       // of the names
  std::bitset<1024> FPrefixStarts;  // the first two bytes of the prefixes
  uint32_t FPrefixLetters = 0;      // a bit for each of their first bytes
  std::vector<TEntry> FEntries, FPrefixes;
  std::vector<uint16_t> FSlots;  // by hash: index of an entry plus 1, or 0; open addressing
};

}  // namespace mig
