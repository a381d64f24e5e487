// Converts names in project files to full Windows paths, and looks up the files.
#pragma once

#include <string>
#include <string_view>

namespace host {

// Returns the full path of `name` as written in the project file `baseFile`, a full Windows path: `name` is
// full or relative to that file's folder, with either separator. "." and ".." are resolved by text, the case
// is kept. No file is accessed.
std::string ResolveName(std::string_view baseFile, std::string_view name);

// Returns a key that is equal for two names of one file, decided by text alone: names are compared ignoring
// case.
std::string FileKey(std::string_view fileName);

// The kind of file under a name, in any case. Missing also if it cannot be accessed; the reason is then in
// win::GetLastError.
enum class TFileKind { Missing, File, Folder };
TFileKind KindOfFile(std::string_view fileName);
// Returns the reason why KindOfFile has just returned Missing: "does not exist." or "cannot be read. Access
// is denied."
std::string ReasonOfMissing();

}  // namespace host
