// Finds files of a run that would share one name in its temporary folder, its backup folder and its undo
// file. Both operations raise ETwinFiles, before the second file takes the place of the first.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace mig {

class TTwinFiles {
 public:
  // For a project run, whose folders are flat: checks that no other file of the same bare name was added.
  // The same file may be added again, in any spelling.
  void AddBareName(const std::string& fileName);

  // For a folder run: checks that no other file or folder was added whose full name differs from `name` in
  // case alone. Checks and adds the folders above it as well.
  void AddFullName(const std::string& name);

 private:
  std::unordered_map<std::string, std::string> FBareNames;  // upper-cased bare name -> full name
  std::unordered_map<std::string, std::string> FFullNames;  // upper-cased full name -> full name
  std::unordered_set<std::string> FCheckedNames;            // full names in the spellings that were added
};

}  // namespace mig
