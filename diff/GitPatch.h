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
  // For a file that a text patch cannot carry: its contents as UTF-8 text. Both empty: nothing readable is shown.
  std::string_view OldText, NewText;
};

// Whether a text patch cannot carry these bytes, because they hold a NUL.
bool NeedsBinaryPatch(const TPatchFile& file);

// Returns the patch of one file, or an empty string where nothing changed. Applied with `git apply` it gives
// exactly NewBytes, whatever line ends, marks and encodings they hold; so `ignore` is then Nothing. With another
// `ignore` the patch leaves the ignored differences out, is for reading only, and begins with a line that says so.
//
// A file that needs a binary patch comes as one, after a diff of its texts on lines that begin with "# ", which
// patch tools skip. For reading only, the binary part is left out.
std::string GitPatch(const TPatchFile& file, TIgnore ignore = TIgnore::Nothing);

}  // namespace diff
