#include "MigWizard/passes/WordSearch.h"

#include <algorithm>
#include <limits>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

// Returns the same value for both cases of a letter, and for some other bytes, which only costs time.
size_t Block(char first, char second) {
  const auto fold = [](char c) { return static_cast<size_t>((static_cast<uint8_t>(c) | 0x20) & 0x3F); };
  return fold(first) << 6 | fold(second);
}

}  // namespace

void TWordSearch::Add(std::string_view word) {
  FShortest = FWords.empty() ? word.size() : std::min(FShortest, word.size());
  FWords.emplace_back(word);
  if (word.size() > 1) FFirstBlocks.set(Block(word[0], word[1]));
  FillSteps();
}

void TWordSearch::FillSteps() {
  if (FShortest < 2) return;
  const auto steps = [this](size_t end) {
    return static_cast<uint8_t>(std::min<size_t>(FShortest - 1 - end, std::numeric_limits<uint8_t>::max()));
  };
  FSteps.fill(steps(0));
  for (const std::string& word : FWords) {
    for (size_t end = 1; end < FShortest; ++end) {
      uint8_t& step = FSteps[Block(word[end - 1], word[end])];
      step = std::min(step, steps(end));
    }
  }
}

bool TWordSearch::FindAny(std::string_view text) const {
  if (FWords.empty()) return false;
  if (FShortest < 2) return true;
  for (size_t end = FShortest - 1; end < text.size();) {
    const uint8_t step = FSteps[Block(text[end - 1], text[end])];
    if (step > 0) {
      end += step;
      continue;
    }
    const std::string_view rest = text.substr(end + 1 - FShortest);
    const size_t block = Block(rest[0], rest[1]);
    const auto begins = [rest, block](const std::string& word) {
      return Block(word[0], word[1]) == block && rtl::SameText(rest.substr(0, word.size()), word);
    };
    if (FFirstBlocks[block] && std::any_of(FWords.begin(), FWords.end(), begins)) return true;
    ++end;
  }
  return false;
}

}  // namespace mig
