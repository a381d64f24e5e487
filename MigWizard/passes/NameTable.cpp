#include "MigWizard/passes/NameTable.h"

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr size_t kFewestSlots = 64;  // a power of two
constexpr size_t kSlotsPerEntry = 4;

// Returns True if `name` is `lower` in any case of letters. Both have the same length.
bool IsSpelling(std::string_view lower, std::string_view name) {
  const auto fold = [](char c) { return static_cast<char>(c >= 'A' && c <= 'Z' ? c | 0x20 : c); };
  for (size_t i = 0; i < lower.size(); ++i)
    if (fold(name[i]) != lower[i]) return false;
  return true;
}

}  // namespace

TNameTable::TNameTable() : FSlots(kFewestSlots) {}

void TNameTable::Add(std::string_view name, uint32_t flags) {
  const size_t slot = SlotOf(name);
  if (FSlots[slot] != 0) {
    FEntries[FSlots[slot] - 1U].Flags |= flags;
    return;
  }
  FEntries.push_back({rtl::LowerCase(name), flags});
  FSlots[slot] = static_cast<uint16_t>(FEntries.size());
  FShapes.set(ShapeOf(KeyOf(name)));
  if (FEntries.size() * kSlotsPerEntry > FSlots.size()) Grow();
}

void TNameTable::AddPrefix(std::string_view prefix, uint32_t flags) {
  FPrefixes.push_back({rtl::LowerCase(prefix), flags});
  FPrefixStarts.set(StartOf(prefix));
  FPrefixLetters |= 1U << Fold(prefix[0]);
}

void TNameTable::Grow() {
  FSlots.assign(2 * FSlots.size(), 0);
  for (size_t i = 0; i < FEntries.size(); ++i)
    FSlots[SlotOf(FEntries[i].Name)] = static_cast<uint16_t>(i + 1);
}

// Returns the slot of the name, or the empty one where it has to be added.
size_t TNameTable::SlotOf(std::string_view name) const {
  const size_t mask = FSlots.size() - 1;
  const size_t key = KeyOf(name);
  size_t slot = (key ^ key >> 11) * 0x9E3779B1U >> 7 & mask;
  for (; FSlots[slot] != 0; slot = (slot + 1) & mask) {
    const std::string& known = FEntries[FSlots[slot] - 1U].Name;
    if (known.size() == name.size() && IsSpelling(known, name)) break;
  }
  return slot;
}

uint32_t TNameTable::Search(std::string_view name) const {
  const uint16_t entry = FSlots[SlotOf(name)];
  return entry == 0 ? 0 : FEntries[entry - 1U].Flags;
}

uint32_t TNameTable::FindPrefix(std::string_view name) const {
  uint32_t flags = 0;
  for (const TEntry& prefix : FPrefixes)
    if (name.size() >= prefix.Name.size() && IsSpelling(prefix.Name, name)) flags |= prefix.Flags;
  return flags;
}

}  // namespace mig
