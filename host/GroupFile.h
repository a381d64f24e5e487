// A project group on disk: .bpg, .groupproj or .bdsgroup.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/ProjectPath.h"

namespace host {

struct TGroupFile {
  std::string FileName;
  // Full paths, in the group's order, each project once; those of a group in the group stand in its place.
  std::vector<std::string> Projects;
  // What the group lists and this host cannot open, projects of other languages: a line for each.
  std::vector<std::string> PassedOver;
};

// Reads the group `fileName`, a full Windows path. Raises EHostError, with file and line, when it cannot be
// read, lists a project that does not exist, or leads back to itself; and rtl::EFOpenError.
TGroupFile ReadGroupFile(std::string_view fileName);

}  // namespace host
