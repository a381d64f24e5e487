// What changed between two texts, by lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

struct TDiffLine {
  enum class TKind { Same, Removed, Added };
  TKind Kind;
  std::string_view Text;  // without its line end
  int OldLine;            // from 1; 0 for an added line
  int NewLine;            // from 1; 0 for a removed line
  bool operator==(const TDiffLine&) const = default;
};

// All lines of both texts, in their order: first what a place lost, then what it gained. The texts must
// outlive the result. A shortest script, by E. W. Myers, "An O(ND) Difference Algorithm and Its Variations";
// texts that have next to nothing in common are given as removed and added whole.
std::vector<TDiffLine> DiffLines(std::string_view oldText, std::string_view newText);

}  // namespace desktop
