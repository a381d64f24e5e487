// Makes the patch of a run, and prints it on standard output.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "cli/CommandLine.h"
#include "cli/Pager.h"

namespace mig {
struct TFileConversion;
}

namespace cli {

// Returns a file's name relative to `folder`, with "/". Both are full Windows paths.
std::string ShownName(const std::string& fileName, std::string_view folder);
// Returns the patch with the changes that the conversion makes to the file, a full Windows path. Raises the
// exceptions of reading the file.
std::string MakePatch(const std::string& fileName, const mig::TFileConversion& conversion,
                      std::string_view folder, bool ignoresSpace);
// Returns a patch as shown on a terminal: control characters in the files become "^X". `colour` is the value
// of --color.
std::string ShownPatch(std::string_view patch, const std::string& colour);

// Prints each file's patch immediately. On a terminal the patch is coloured and piped through the pager,
// $PAGER or `less`, like git's output, and control characters in the files are printed as "^X".
class TPatchPrinter {
 public:
  // `folder` is the full Windows path that the names in the patch are relative to.
  TPatchPrinter(const TCommandLine& line, std::string_view folder);

  // Prints the changes that the conversion makes to the file, a full Windows path. Repeated calls for a
  // file print nothing. Raises EOutput and the exceptions of reading the file.
  void Print(const std::string& fileName, const mig::TFileConversion& conversion);

  // Waits until the user has closed the pager, if there is one. Call it before anything else is printed.
  void Finish() { FPager.Finish(); }

  // Returns how to apply the printed patch, or an empty string if `git apply` in the folder does it: git
  // skips files below a folder that is not the top of its working tree, and refuses files outside of the
  // folder.
  std::string ApplyHint() const;

 private:
  void Write(std::string_view patch);

  const std::string FFolder;
  const bool FIgnoresSpace;
  const std::string FColour;
  const bool FHasPager;
  std::unordered_set<std::string> FPrinted;  // names in upper case
  bool FHasOutside = false;                  // a printed file is outside of FFolder
  TPager FPager;
};

}  // namespace cli
