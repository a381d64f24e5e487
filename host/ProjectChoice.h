// Opens the project that a command line names, and selects units of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"

namespace host {

// Opens the project or group `typed`: a host path or a Windows path, relative to the process's folder unless
// it is full. Returns the active project, which has at least one unit on disk. In a group that is the project
// `active`, or the first one if `active` is empty. `active` is a path, full or relative to the folder of the
// process or of the group, or a file name with or without its extension, in any case.
//
// Raises EHostError or rtl::EFOpenError for files that cannot be used, and EChoiceError if `active` names no
// project of the group or more than one.
TProject& OpenProjectForRun(THost& host, std::string_view typed, std::string_view active = {});

// Returns the bare file names of the project's .pas units, in the project's order: all of them if `names` is
// empty, else those in `names`, which are bare file names in any case. Raises EChoiceError for a name that
// the project lacks.
std::vector<std::string> SelectUnits(const TProject& project, const std::vector<std::string>& names);

}  // namespace host
