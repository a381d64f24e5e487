// A file named by a project or group file, spelled as there, in UTF-8.
#pragma once

#include <string>

namespace host {

struct TFileReference {
  std::string Name;
  std::string FormName{};   // of a unit with a form, if the project file has it
  std::string FormClass{};  // the same: "TDataModule", "TFrame"
  int Line = 0;             // the line of the name, from 1
};

}  // namespace host
