// The names that project files hold, as full Windows paths, and what stands on disk under many of them.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace host {

// The full path of `name` as written in the project file `baseFile` (a full Windows path): relative to that
// file's folder or full, with either separator, `.` and `..` resolved by text. Letters stay as written. No
// file is touched.
std::string ResolveName(std::string_view baseFile, std::string_view name);

// Two names of one file, as far as text tells, have one key: names are compared without regard to case.
std::string FileKey(std::string_view fileName);

// Looks names up on disk ignoring case, each folder being walked once: 5,000 units of one folder cost one
// walk. The answers are those of the first look, so an index lives for one opening of a project and no
// longer.
class TFolderIndex {
 public:
  enum class TKind { Missing, File, Folder };
  TKind KindOf(std::string_view fileName);

 private:
  using TEntries = std::unordered_map<std::string, TKind>;  // by upper-cased name
  const TEntries& EntriesOf(const std::string& folder);

  std::unordered_map<std::string, TEntries> FFolders;  // by path with its last separator
};

}  // namespace host
