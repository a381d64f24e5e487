#include "MigWizard/passes/LinePairs.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace mig {
namespace {

constexpr size_t kFarthest = 64;  // lines between two that are equal

using TLines = std::vector<std::string_view>;

// Returns the lines of a text without their ends. A text that ends with a line end has an empty last line.
TLines LinesOf(std::string_view text) {
  TLines lines;
  for (size_t start = 0;;) {
    const size_t end = std::min(text.find_first_of("\r\n", start), text.size());
    lines.push_back(text.substr(start, end - start));
    if (end == text.size()) return lines;
    start = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
  }
}

// Returns how many lines before and after the change to skip until the next equal lines.
std::optional<std::pair<size_t, size_t>> NextEqual(const TLines& before, size_t i, const TLines& after,
                                                   size_t j) {
  for (size_t distance = 1; distance <= kFarthest; ++distance) {
    for (size_t skipped = 0; skipped <= distance; ++skipped) {
      const size_t a = i + skipped, b = j + distance - skipped;
      if (a >= before.size() || b >= after.size() || before[a] != after[b]) continue;
      // A blank line says little about which lines belong together.
      if (!before[a].empty() || a - i == b - j) return std::pair(a - i, b - j);
    }
  }
  return std::nullopt;
}

}  // namespace

TLinePairs::TLinePairs(std::string_view before, std::string_view after, const qrl::TEncoding& encoding)
    : FPlaces(before, encoding), FBefore(LinesOf(before)), FAfter(LinesOf(after)) {
  for (size_t i = 0, j = 0; i < FBefore.size();) {
    std::pair<size_t, size_t> count{1, 1};
    if (j >= FAfter.size() || FBefore[i] != FAfter[j])
      count = NextEqual(FBefore, i, FAfter, j)
                  .value_or(std::pair(FBefore.size() - i, FAfter.size() - std::min(j, FAfter.size())));
    Pair(j, count.first, count.second);
    i += count.first;
    j += count.second;
  }
}

// Pairs the next lines with the same number of lines from `first` on. The last one gets all that remain.
void TLinePairs::Pair(size_t first, size_t countBefore, size_t countAfter) {
  for (size_t k = 0; k < countBefore; ++k) {
    const size_t begin = std::min(k, countAfter);
    const size_t end = k + 1 == countBefore ? countAfter : std::min(k + 1, countAfter);
    FRanges.push_back({first + begin, first + end});
  }
}

std::string TLinePairs::After(size_t begin, size_t end) const {
  const size_t first = FPlaces.At(begin).Line - 1;
  const size_t last = FPlaces.At(std::max(begin, end == 0 ? 0 : end - 1)).Line - 1;
  std::string text;
  bool isAny = false;
  for (size_t line = FRanges[first].First; line < FRanges[last].End; ++line) {
    if (std::exchange(isAny, true)) text += '\n';
    text.append(FAfter[line]);
  }
  return text;
}

}  // namespace mig
