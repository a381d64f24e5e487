#include "diff/LineDiff.h"

#include <algorithm>
#include <cstddef>
#include <dtl/dtl.hpp>
#include <string>
#include <unordered_map>

namespace diff {
namespace {

using TKind = TDiffLine::TKind;
using TLines = std::vector<std::string_view>;

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v';
}

// Numbers lines such that two lines get the same number exactly when they count as equal.
class TLineNumbers {
 public:
  explicit TLineNumbers(TIgnore ignore) : FIgnore(ignore) {}

  std::vector<int> Of(const TLines& lines) {
    std::vector<int> numbers;
    numbers.reserve(lines.size());
    for (const std::string_view line : lines) {
      numbers.push_back(FNumbers.try_emplace(Key(line), static_cast<int>(FNumbers.size())).first->second);
    }
    return numbers;
  }
  size_t Count() const { return FNumbers.size(); }

 private:
  std::string Key(std::string_view line) const {
    if (FIgnore == TIgnore::Nothing) return std::string(line);
    if (FIgnore == TIgnore::LineEnds) {
      while (line.ends_with('\n') || line.ends_with('\r')) line.remove_suffix(1);
      return std::string(line);
    }
    std::string key(line);
    std::erase_if(key, IsSpace);
    return key;
  }

  TIgnore FIgnore;
  std::unordered_map<std::string, int> FNumbers;
};

// One side of the search: the lines that also occur on the other side, and for each where it came from.
struct TCandidates {
  std::vector<int> Numbers;
  std::vector<size_t> Lines;
};

// Returns the lines from `first` to before `end` whose numbers `other` marks.
TCandidates Select(const std::vector<int>& numbers, size_t first, size_t end,
                   const std::vector<bool>& other) {
  TCandidates result;
  for (size_t i = first; i < end; ++i) {
    if (!other[static_cast<size_t>(numbers[i])]) continue;
    result.Numbers.push_back(numbers[i]);
    result.Lines.push_back(i);
  }
  return result;
}

std::vector<bool> Occurring(const std::vector<int>& numbers, size_t first, size_t end, size_t count) {
  std::vector<bool> result(count);
  for (size_t i = first; i < end; ++i) result[static_cast<size_t>(numbers[i])] = true;
  return result;
}

// The pairs of lines, 0-based, that a shortest script keeps, in order. The library runs the O(NP) algorithm
// of Wu, Manber, Myers and Miller, "An O(NP) Sequence Comparison Algorithm" (1990).
using TPairs = std::vector<std::pair<size_t, size_t>>;

void AddCommonLines(const TCandidates& oldSide, const TCandidates& newSide, TPairs& pairs) {
  dtl::Diff<int> search(oldSide.Numbers, newSide.Numbers);
  search.onHuge();
  search.compose();
  for (const auto& [number, info] : search.getSes().getSequence()) {
    if (info.type != dtl::SES_COMMON) continue;
    pairs.emplace_back(oldSide.Lines[static_cast<size_t>(info.beforeIdx - 1)],
                       newSide.Lines[static_cast<size_t>(info.afterIdx - 1)]);
  }
}

TPairs CommonLines(const std::vector<int>& oldLines, const std::vector<int>& newLines, size_t count) {
  TPairs pairs;
  size_t first = 0;
  size_t oldEnd = oldLines.size();
  size_t newEnd = newLines.size();
  while (first < oldEnd && first < newEnd && oldLines[first] == newLines[first]) {
    pairs.emplace_back(first, first);
    ++first;
  }
  while (oldEnd > first && newEnd > first && oldLines[oldEnd - 1] == newLines[newEnd - 1]) --oldEnd, --newEnd;
  const TCandidates oldSide = Select(oldLines, first, oldEnd, Occurring(newLines, first, newEnd, count));
  const TCandidates newSide = Select(newLines, first, newEnd, Occurring(oldLines, first, oldEnd, count));
  AddCommonLines(oldSide, newSide, pairs);
  for (size_t i = oldEnd; i < oldLines.size(); ++i) pairs.emplace_back(i, newEnd + (i - oldEnd));
  return pairs;
}

}  // namespace

std::vector<std::string_view> SplitLines(std::string_view text) {
  TLines lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    const size_t length = end == std::string_view::npos ? text.size() : end + 1;
    lines.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  return lines;
}

std::vector<TDiffLine> DiffLines(std::string_view oldText, std::string_view newText, TIgnore ignore) {
  const TLines oldLines = SplitLines(oldText);
  const TLines newLines = SplitLines(newText);
  TLineNumbers numbers(ignore);
  const std::vector<int> oldNumbers = numbers.Of(oldLines);
  const std::vector<int> newNumbers = numbers.Of(newLines);

  std::vector<TDiffLine> result;
  result.reserve(std::max(oldLines.size(), newLines.size()));
  size_t oldLine = 0;
  size_t newLine = 0;
  const auto addChanges = [&](size_t oldEnd, size_t newEnd) {
    for (; oldLine < oldEnd; ++oldLine)
      result.push_back({TKind::Removed, oldLines[oldLine], {}, static_cast<int>(oldLine) + 1, 0});
    for (; newLine < newEnd; ++newLine)
      result.push_back({TKind::Added, {}, newLines[newLine], 0, static_cast<int>(newLine) + 1});
  };
  for (const auto& [oldCommon, newCommon] : CommonLines(oldNumbers, newNumbers, numbers.Count())) {
    addChanges(oldCommon, newCommon);
    ++oldLine;
    ++newLine;
    result.push_back({TKind::Same, oldLines[oldCommon], newLines[newCommon], static_cast<int>(oldLine),
                      static_cast<int>(newLine)});
  }
  addChanges(oldLines.size(), newLines.size());
  return result;
}

}  // namespace diff
