// A project group on disk: .bpg, .groupproj or .bdsgroup.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/ProjectPath.h"

namespace host {

struct TGroupFile {
  std::string FileName;
  // Full paths in the group's order, each project once. A group in the group is replaced by its projects.
  std::vector<std::string> Projects;
  // A message for each entry that this host cannot open, such as a project of another language.
  std::vector<std::string> PassedOver;
};

// Reads the group `fileName`, a full Windows path. Raises EHostError, with file and line, if the group cannot
// be read, lists a project that does not exist, or contains itself; and rtl::EFOpenError.
TGroupFile ReadGroupFile(std::string_view fileName);

}  // namespace host
