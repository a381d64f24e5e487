#include "MigWizard/passes/WordSearch.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr size_t kBlock = 3;  // bytes
constexpr int kIndexBits = 14;

// Returns the index of a block in the table of steps. It is the same for both cases of a letter. The order of
// bytes in the host's integers does not matter.
size_t IndexOf(const char* block) {
  uint16_t pair = 0;
  std::memcpy(&pair, block, sizeof pair);
  const uint32_t third = static_cast<uint8_t>(block[2]);
  const uint32_t folded = (pair | third << 16) | 0x202020U;
  return folded * 0x9E3779B1U >> (32 - kIndexBits);
}

// Returns the same value for both cases of a letter. The number of values is that of
// TWordSearch::FBeginnings.
size_t HashOf(std::string_view bytes) {
  size_t hash = 0;
  for (const char c : bytes) hash = hash * 31 + (static_cast<uint8_t>(c) | 0x20U);
  return (hash ^ hash >> 12) & 0xFFF;
}

}  // namespace

void TWordSearch::Add(std::string_view word) {
  const bool isShortest = FWords.empty() || word.size() < FShortest;
  FWords.emplace_back(word);
  if (isShortest) FShortest = word.size();
  if (FShortest < kBlock) return;
  if (!isShortest) return FillSteps(word);
  FSteps.assign(size_t{1} << kIndexBits, StepAfter(kBlock - 2));
  FBeginnings.reset();
  for (const std::string& each : FWords) FillSteps(each);
}

// Returns the distance from the byte at `index` of a word to the last one of its first FShortest bytes.
uint8_t TWordSearch::StepAfter(size_t index) const {
  return static_cast<uint8_t>(std::min<size_t>(FShortest - 1 - index, std::numeric_limits<uint8_t>::max()));
}

void TWordSearch::FillSteps(std::string_view word) {
  FBeginnings.set(HashOf(word.substr(0, FShortest)));
  for (size_t end = kBlock - 1; end < FShortest; ++end) {
    uint8_t& step = FSteps[IndexOf(&word[end + 1 - kBlock])];
    step = std::min(step, StepAfter(end));
  }
}

bool TWordSearch::FindAny(std::string_view text) const {
  if (FWords.empty()) return false;
  if (FShortest < kBlock) return true;
  const char* const bytes = text.data();
  const uint8_t* const steps = FSteps.data();
  for (size_t end = FShortest - 1; end < text.size();) {
    const uint8_t step = steps[IndexOf(bytes + end + 1 - kBlock)];
    end += step;
    if (step > 0) continue;
    const std::string_view rest = text.substr(end + 1 - FShortest);
    const auto begins = [rest](const std::string& word) {
      return rtl::SameText(rest.substr(0, word.size()), word);
    };
    if (FBeginnings[HashOf(rest.substr(0, FShortest))] && std::any_of(FWords.begin(), FWords.end(), begins))
      return true;
    ++end;
  }
  return false;
}

}  // namespace mig
