// The differences between two versions of a file, ready for display: rows that lie side by side, or lines one
// below the other, with the changed words of each line. Nothing here needs a window, and everything may be
// computed on any thread.
//
//   const auto diff = std::make_shared<TFileDiff>(before, after, /*ignoreSpace=*/true);
//   const TDiffPage page = MakeDiffPage(*diff, {.SideBySide = true});
#pragma once

#include <QString>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "diff/LineAlignment.h"

namespace desktop {

// The lines of both versions, compared.
class TFileDiff {
 public:
  // The arguments are the bytes of a source or form file. With `ignoreSpace`, lines that differ in white
  // space only are the same. Differences in line ends are ignored in any case.
  TFileDiff(std::string_view before, std::string_view after, bool ignoreSpace);
  TFileDiff(const TFileDiff&) = delete;  // the lines point into the texts
  TFileDiff& operator=(const TFileDiff&) = delete;

  const std::vector<diff::TDiffLine>& Lines() const { return FLines; }
  size_t Added() const { return FAdded; }
  size_t Removed() const { return FRemoved; }
  bool IgnoresSpace() const { return FIgnoresSpace; }
  // Returns the line of the new version, from 1, that took the place of a line of the old version.
  int NewLineOf(int oldLine) const;

 private:
  const bool FIgnoresSpace;
  std::string FOldText, FNewText;
  std::vector<diff::TDiffLine> FLines;
  size_t FAdded = 0;
  size_t FRemoved = 0;
};

// One line of a pane.
struct TPaneLine {
  enum class TKind {
    Same,
    Removed,
    Added,
    Absent,  // the other pane has a line here
    Fold     // stands for unchanged lines that are not shown
  };
  TKind Kind = TKind::Same;
  int OldLine = 0;                              // from 1; 0 if there is none
  int NewLine = 0;                              // the same
  std::vector<std::pair<int, int>> Words = {};  // changed words: offset and length in UTF-16 units
};

// The text of a pane, and its lines.
struct TPaneText {
  QString Text;
  std::vector<TPaneLine> Lines;
};

struct TDiffLayout {
  bool SideBySide = true;
  bool WholeFile = false;  // otherwise only the changes with three lines around them
};

struct TDiffPage {
  TPaneText Left;            // all lines, unless side by side
  TPaneText Right;           // as many lines as Left; empty unless side by side
  std::vector<int> Changes;  // the first line of each run of changes, from 0
};

TDiffPage MakeDiffPage(const TFileDiff& diff, const TDiffLayout& layout);

}  // namespace desktop
