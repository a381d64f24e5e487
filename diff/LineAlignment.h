// Which lines of a diff belong side by side, and which words of two such lines differ.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "diff/LineDiff.h"

namespace diff {

// A row of a side-by-side view: a line on each side, or nothing on one of them.
struct TDiffRow {
  const TDiffLine* Old = nullptr;  // Same or Removed
  const TDiffLine* New = nullptr;  // Same or Added; the same object as Old for a line that is the same
  bool operator==(const TDiffRow&) const = default;
};

// Returns the rows of `lines`, as DiffLines gave them. In a run of changes, removed and added lines that are
// alike come side by side and keep their order, such that the sum of their similarities is the largest. Runs
// of more than about a million pairs are matched by equal lines, ignoring white space, and then in order. The
// rows point into `lines`.
std::vector<TDiffRow> AlignLines(const std::vector<TDiffLine>& lines);

// A part of a line, in bytes.
struct TSpan {
  size_t Offset = 0;
  size_t Length = 0;
  bool operator==(const TSpan&) const = default;
};

// Returns the parts of `oldLine` and of `newLine` that the other one lacks, in order. A part consists of
// whole words: runs of letters, digits, underscores and bytes from 128 up, runs of white space, or single
// other bytes.
struct TWordDiff {
  std::vector<TSpan> Old, New;
};
TWordDiff DiffWords(std::string_view oldLine, std::string_view newLine);

}  // namespace diff
