// A patch in git's format, for `git apply`, `patch` and people.
//
//   std::fputs(diff::GitPatch({.Path = "src/Main.pas", .OldBytes = before, .NewBytes = after}).c_str(), stdout);
#pragma once

#include <string>
#include <string_view>

#include "diff/LineDiff.h"

namespace diff {

// One changed file. The views must be valid during the call.
struct TPatchFile {
  std::string_view Path;  // relative, with '/' between its components
  std::string_view OldBytes, NewBytes;
  // For a file that needs a binary patch: its contents as UTF-8 text. Both empty: nothing readable is shown.
  std::string_view OldText, NewText;
};

// Returns whether the file needs a binary patch, because its bytes contain a NUL.
bool NeedsBinaryPatch(const TPatchFile& file);

// Returns the patch of one file, or an empty string if nothing changed. With `ignore` Nothing, `git apply` of
// the patch gives exactly NewBytes, whatever line ends, byte order marks and encodings they contain. With
// another `ignore` the patch leaves out the ignored differences, is for reading only, and begins with a line
// that says so.
//
// A file that needs a binary patch gets one, after a diff of its texts on lines that begin with "# ", which
// patch tools skip. A patch for reading only has no binary part.
std::string GitPatch(const TPatchFile& file, TIgnore ignore = TIgnore::Nothing);

}  // namespace diff
