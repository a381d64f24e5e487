#include "MigWizard/engine/LL1Memo.h"

#include <algorithm>
#include <utility>

namespace mig {
namespace {

constexpr size_t kFirstSize = size_t{1} << 10;
constexpr size_t kLargestSize = size_t{1} << 20;  // 16 MB
constexpr size_t kWindow = 8;                     // entries that are looked at for a key

}  // namespace

void TLL1Memo::Clear() {
  FCount = 0;
  if (++FEpoch != 0) return;
  std::fill(FEntries.begin(), FEntries.end(), TEntry{});
  FEpoch = 1;
}

size_t TLL1Memo::Home(int32_t rule, int32_t position) const {
  const uint64_t key =
      static_cast<uint64_t>(static_cast<uint32_t>(rule)) << 32 | static_cast<uint32_t>(position);
  return static_cast<size_t>(key * 0x9E3779B97F4A7C15U >> 32) & (FEntries.size() - 1);
}

int32_t TLL1Memo::Find(int32_t rule, int32_t position) const {
  if (FCount == 0) return kUnknown;
  const size_t home = Home(rule, position);
  for (size_t i = 0; i < kWindow; ++i) {
    const TEntry& entry = FEntries[(home + i) & (FEntries.size() - 1)];
    if (entry.Epoch != FEpoch) return kUnknown;
    if (entry.Rule == rule && entry.Position == position) return entry.Result;
  }
  return kUnknown;
}

// The entry of that key, or the free one that is to be its, or null if the window is full.
TLL1Memo::TEntry* TLL1Memo::Place(int32_t rule, int32_t position) {
  const size_t home = Home(rule, position);
  for (size_t i = 0; i < kWindow; ++i) {
    TEntry& entry = FEntries[(home + i) & (FEntries.size() - 1)];
    if (entry.Epoch != FEpoch || (entry.Rule == rule && entry.Position == position)) return &entry;
  }
  return nullptr;
}

void TLL1Memo::Store(int32_t rule, int32_t position, int32_t result) {
  if (FCount * 2 >= FEntries.size() && FEntries.size() < kLargestSize) Grow();
  TEntry* entry = Place(rule, position);
  if (entry == nullptr) entry = &FEntries[Home(rule, position)];
  if (entry->Epoch != FEpoch) ++FCount;
  *entry = {FEpoch, rule, position, result};
}

void TLL1Memo::Grow() {
  std::vector<TEntry> old = std::exchange(FEntries, {});
  FEntries.resize(std::max(kFirstSize, old.size() * 2));
  FCount = 0;
  for (const TEntry& source : old) {
    if (source.Epoch != FEpoch) continue;
    TEntry* entry = Place(source.Rule, source.Position);
    if (entry == nullptr) continue;
    if (entry->Epoch != FEpoch) ++FCount;
    *entry = source;
  }
}

}  // namespace mig
