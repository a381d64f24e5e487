// The names that project files hold, as full Windows paths, and what stands on disk under them.
#pragma once

#include <string>
#include <string_view>

namespace host {

// The full path of `name` as written in the project file `baseFile` (a full Windows path): relative to that
// file's folder or full, with either separator, `.` and `..` resolved by text. Letters stay as written. No
// file is touched.
std::string ResolveName(std::string_view baseFile, std::string_view name);

// Two names of one file, as far as text tells, have one key: names are compared without regard to case.
std::string FileKey(std::string_view fileName);

// What stands on disk under a name, whatever its case there.
enum class TFileKind { Missing, File, Folder };
TFileKind KindOfFile(std::string_view fileName);

}  // namespace host
