// Finds files of a run that would share a name in its temporary folder, its backup folder and its undo file.
// Both operations raise ENameClash, before the second file overwrites the first.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace mig {

class TNameClashes {
 public:
  // For a project run, whose folders are flat: checks that no other file with the same bare name was added.
  // The same file may be added again, in any spelling.
  void AddBareName(const std::string& fileName);

  // For a folder run: checks that no added file or folder has a full name that differs from `name` only in
  // case. Also checks and adds the folders above it.
  void AddFullName(const std::string& name);

 private:
  std::unordered_map<std::string, std::string> FBareNames;  // upper-cased bare name -> full name
  std::unordered_map<std::string, std::string> FFullNames;  // upper-cased full name -> full name
  std::unordered_set<std::string> FCheckedNames;            // full names in the spellings that were added
};

}  // namespace mig
