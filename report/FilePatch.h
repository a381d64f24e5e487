// The changes of one file, as text for people and as a patch.
//
//   std::fputs(report::FilePatch("src/Main.pas", before, after, /*ignoreSpace=*/false).c_str(), stdout);
#pragma once

#include <string>
#include <string_view>

namespace report {

// Returns the contents of a source or form file as UTF-8 text, without a byte order mark; for a binary form,
// as `kvamigrate form to-text` prints it. Returns an empty string if the form is damaged. May be called by
// several threads at a time.
std::string ReadableText(std::string_view bytes);

// Returns the patch from the bytes `before` to `after` in git's format (diff/GitPatch.h). `path` is relative,
// with "/". With `ignoreSpace` the patch leaves out differences in white space, and is for reading only.
std::string FilePatch(std::string_view path, std::string_view before, std::string_view after,
                      bool ignoreSpace);

// Returns `fileName`, a full Windows path, relative to `folder`, with "/".
std::string PatchPath(std::string_view folder, std::string_view fileName);

}  // namespace report
