#include "desktop/LineDiff.h"

#include <algorithm>
#include <cstddef>

namespace desktop {

namespace {

using TLines = std::vector<std::string_view>;

// The trace of a search of this many steps takes some 32 MB; nobody reads more changes than that.
constexpr int kMostSteps = 2000;

TLines SplitLines(std::string_view text) {
  TLines lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
  }
  return lines;
}

// The search for the shortest script that turns FOld into FNew: FTrace[d] holds, for each diagonal from -d to
// d, how far in FOld one comes with d steps.
class TSearch {
 public:
  TSearch(const TLines& oldLines, const TLines& newLines, size_t first, size_t oldEnd, size_t newEnd)
      : FOld(oldLines.data() + first),
        FNew(newLines.data() + first),
        FOldCount(static_cast<int>(oldEnd - first)),
        FNewCount(static_cast<int>(newEnd - first)) {}

  // False when it takes too many steps.
  bool Run() {
    for (int d = 0; d <= std::min(kMostSteps, FOldCount + FNewCount); ++d) {
      FTrace.emplace_back(static_cast<size_t>(2 * d + 1));
      for (int k = -d; k <= d; k += 2) {
        int x = d == 0 ? 0 : Start(d, k);
        while (x < FOldCount && x - k < FNewCount && FOld[x] == FNew[x - k]) ++x;
        At(d, k) = x;
        if (x >= FOldCount && x - k >= FNewCount) return true;
      }
    }
    return false;
  }

  // The kinds of the script's lines, last one first.
  std::vector<TDiffLine::TKind> Script() const {
    using enum TDiffLine::TKind;
    std::vector<TDiffLine::TKind> script;
    int x = FOldCount;
    int k = FOldCount - FNewCount;
    for (int d = static_cast<int>(FTrace.size()) - 1; d > 0; --d) {
      const int start = Start(d, k);
      script.insert(script.end(), static_cast<size_t>(x - start), Same);
      const bool isAdded = IsDown(d, k);
      script.push_back(isAdded ? Added : Removed);
      k += isAdded ? 1 : -1;
      x = isAdded ? start : start - 1;
    }
    script.insert(script.end(), static_cast<size_t>(x), Same);
    return script;
  }

 private:
  int& At(int d, int k) { return FTrace[static_cast<size_t>(d)][static_cast<size_t>(k + d)]; }
  // How far d - 1 steps come on diagonal k; before everything where they do not reach it.
  int Before(int d, int k) const {
    if (k < 1 - d || k > d - 1) return -1;
    return FTrace[static_cast<size_t>(d - 1)][static_cast<size_t>(k + d - 1)];
  }
  // Whether the d-th step to diagonal k adds a line; otherwise it removes one.
  bool IsDown(int d, int k) const {
    const int above = Before(d, k + 1);
    const int left = Before(d, k - 1);
    return k == -d || (k != d && left < above);
  }
  int Start(int d, int k) const { return IsDown(d, k) ? Before(d, k + 1) : Before(d, k - 1) + 1; }

  const std::string_view* FOld;
  const std::string_view* FNew;
  int FOldCount;
  int FNewCount;
  std::vector<std::vector<int>> FTrace;
};

// Within a run of changes, what went before what came.
void PutRemovedFirst(std::vector<TDiffLine>& lines) {
  using enum TDiffLine::TKind;
  for (auto run = lines.begin(); run != lines.end();) {
    run = std::find_if(run, lines.end(), [](const TDiffLine& line) { return line.Kind != Same; });
    const auto end = std::find_if(run, lines.end(), [](const TDiffLine& line) { return line.Kind == Same; });
    std::stable_partition(run, end, [](const TDiffLine& line) { return line.Kind == Removed; });
    run = end;
  }
}

}  // namespace

std::vector<TDiffLine> DiffLines(std::string_view oldText, std::string_view newText) {
  using enum TDiffLine::TKind;
  const TLines oldLines = SplitLines(oldText);
  const TLines newLines = SplitLines(newText);
  size_t first = 0;
  size_t oldEnd = oldLines.size();
  size_t newEnd = newLines.size();
  while (first < oldEnd && first < newEnd && oldLines[first] == newLines[first]) ++first;
  while (oldEnd > first && newEnd > first && oldLines[oldEnd - 1] == newLines[newEnd - 1]) --oldEnd, --newEnd;

  TSearch search(oldLines, newLines, first, oldEnd, newEnd);
  std::vector<TDiffLine::TKind> middle;
  if (search.Run()) {
    middle = search.Script();
    std::reverse(middle.begin(), middle.end());
  } else {
    middle.assign(oldEnd - first, Removed);
    middle.insert(middle.end(), newEnd - first, Added);
  }

  std::vector<TDiffLine> lines;
  lines.reserve(first + middle.size() + oldLines.size() - oldEnd);
  size_t oldLine = 0;
  size_t newLine = 0;
  const auto add = [&](TDiffLine::TKind kind) {
    const std::string_view text = kind == Added ? newLines[newLine] : oldLines[oldLine];
    const int oldNumber = kind == Added ? 0 : static_cast<int>(++oldLine);
    const int newNumber = kind == Removed ? 0 : static_cast<int>(++newLine);
    lines.push_back({kind, text, oldNumber, newNumber});
  };
  for (size_t i = 0; i < first; ++i) add(Same);
  for (const TDiffLine::TKind kind : middle) add(kind);
  for (size_t i = oldEnd; i < oldLines.size(); ++i) add(Same);
  PutRemovedFirst(lines);
  return lines;
}

}  // namespace desktop
