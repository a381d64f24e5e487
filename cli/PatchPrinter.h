// The patch that a run would be, on standard output.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

#include "cli/CommandLine.h"

namespace mig {
struct TFileConversion;
}

namespace cli {

// Prints a file's patch as soon as it is given. On a terminal the patch has colours and goes to the pager, $PAGER or
// `less`, as git's output does; control characters in the files come out as "^X" there.
class TPatchPrinter {
 public:
  // `folder` is the full Windows path that the names in the patch are relative to.
  TPatchPrinter(const TCommandLine& line, std::string_view folder);
  // Ends the pager.
  ~TPatchPrinter();
  TPatchPrinter(const TPatchPrinter&) = delete;
  TPatchPrinter& operator=(const TPatchPrinter&) = delete;

  // Prints what the conversion changes in the file, a full Windows path; once for each file. Raises EOutput, and what
  // reading the file raises.
  void Print(const std::string& fileName, const mig::TFileConversion& conversion);

 private:
  void Write(std::string_view patch);

  const std::string FFolder;
  const bool FIgnoresSpace;
  const bool FHasPager;
  const bool FHasColours;
  std::unordered_set<std::string> FPrinted;  // names in upper case
  int FPager = -1;                           // the pipe to the pager, once there is one
  int FPagerProcess = -1;
};

}  // namespace cli
