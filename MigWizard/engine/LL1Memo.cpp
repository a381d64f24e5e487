#include "MigWizard/engine/LL1Memo.h"

#include <algorithm>
#include <utility>

namespace mig {
namespace {

constexpr size_t kFirstSize = size_t{1} << 10;
constexpr size_t kLargestSize = size_t{1} << 20;  // 16 MB
constexpr size_t kWindow = 8;                     // slots that are searched for a key

}  // namespace

void TLL1Memo::Clear() {
  FCount = 0;
  if (++FEpoch != 0) return;
  std::fill(FSlots.begin(), FSlots.end(), TSlot{});
  FEpoch = 1;
}

size_t TLL1Memo::Hash(int32_t rule, int32_t position) {
  const uint64_t key =
      static_cast<uint64_t>(static_cast<uint32_t>(rule)) << 32 | static_cast<uint32_t>(position);
  return static_cast<size_t>(key * 0x9E3779B97F4A7C15U >> 32);
}

int32_t TLL1Memo::Find(int32_t rule, int32_t position) const {
  if (FCount == 0) return kUnknown;
  const size_t hash = Hash(rule, position);
  for (size_t i = 0; i < kWindow; ++i) {
    const TSlot& slot = FSlots[(hash + i) & (FSlots.size() - 1)];
    if (slot.Epoch != FEpoch) return kUnknown;
    if (slot.Rule == rule && slot.Position == position) return slot.Result;
  }
  return kUnknown;
}

// Returns the slot of that key, or a free slot for it, or null if the window is full.
TLL1Memo::TSlot* TLL1Memo::FindSlot(TSlots& slots, int32_t rule, int32_t position) const {
  const size_t hash = Hash(rule, position);
  for (size_t i = 0; i < kWindow; ++i) {
    TSlot& slot = slots[(hash + i) & (slots.size() - 1)];
    if (slot.Epoch != FEpoch || (slot.Rule == rule && slot.Position == position)) return &slot;
  }
  return nullptr;
}

void TLL1Memo::Store(int32_t rule, int32_t position, int32_t result) {
  if (FCount * 2 >= FSlots.size() && FSlots.size() < kLargestSize) Grow();
  TSlot* slot = FindSlot(FSlots, rule, position);
  if (slot == nullptr) slot = &FSlots[Hash(rule, position) & (FSlots.size() - 1)];
  if (slot->Epoch != FEpoch) ++FCount;
  *slot = {FEpoch, rule, position, result};
}

void TLL1Memo::Grow() {
  TSlots larger(std::max(kFirstSize, FSlots.size() * 2));
  size_t count = 0;
  for (const TSlot& source : FSlots) {
    if (source.Epoch != FEpoch) continue;
    TSlot* slot = FindSlot(larger, source.Rule, source.Position);
    if (slot == nullptr) continue;
    ++count;
    *slot = source;
  }
  FSlots = std::move(larger);
  FCount = count;
}

}  // namespace mig
