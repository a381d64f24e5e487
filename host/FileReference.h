// A file that a project or group file names, as written there, in UTF-8.
#pragma once

#include <string>

namespace host {

struct TFileReference {
  std::string Name;
  std::string FormName{};   // of a unit with a form, where the file tells it
  std::string FormClass{};  // likewise: "TDataModule", "TFrame"
  int Line = 0;             // where the file names it, from 1
};

}  // namespace host
