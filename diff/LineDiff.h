// The differences between two texts, line by line.
//
//   for (const diff::TDiffLine& line : diff::DiffLines(before, after)) {
//     if (line.Kind == diff::TDiffLine::TKind::Removed) Print("-", line.Old);
//   }
#pragma once

#include <string_view>
#include <vector>

namespace diff {

// One line of the combined text. The views point into the texts that were compared and include the line end,
// LF or CR LF; the last line of a text may have none.
struct TDiffLine {
  enum class TKind { Same, Removed, Added };
  TKind Kind = TKind::Same;
  std::string_view Old;  // empty for an added line
  std::string_view New;  // empty for a removed line; for a Same line it may differ from Old in ignored bytes
  int OldLine = 0;       // 1-based; 0 for an added line
  int NewLine = 0;       // 1-based; 0 for a removed line
  bool operator==(const TDiffLine&) const = default;
};

// Which differences within a line do not count.
enum class TIgnore {
  Nothing,
  LineEnds,  // LF against CR LF, and a missing end of the last line
  Space      // all blanks, tabs and line ends
};

// Splits a text at each LF. The lines keep their ends.
std::vector<std::string_view> SplitLines(std::string_view text);

// Returns all lines of both texts in order. In a run of changes, removed lines come before added ones. The
// texts must outlive the result.
//
// Takes time and memory in proportion to the texts and to the square of the number of changed lines that
// occur in both texts. Lines that occur in one text only are left out of the search, so that a text in which
// every line was changed costs no more than one without changes. The script is a shortest one unless the
// search would need more than about 100 MB.
std::vector<TDiffLine> DiffLines(std::string_view oldText, std::string_view newText,
                                 TIgnore ignore = TIgnore::Nothing);

}  // namespace diff
