// A file that a project or group file names, as written there, in UTF-8.
#pragma once

#include <string>

namespace host {

struct TFileReference {
  std::string Name;
  std::string FormName{};   // of a unit with a form, if the file gives it
  std::string FormClass{};  // the same: "TDataModule", "TFrame"
  int Line = 0;             // where the file names it, from 1
};

}  // namespace host
