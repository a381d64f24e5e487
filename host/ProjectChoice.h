// What a command line says about a project - which one, which of its units - made good on the host.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"

namespace host {

// Opens the project or group that the user typed, a host path or a Windows path, relative ones taken from the
// process's folder. In a group the project `active` becomes the active one - its path, full or below the
// process's or the group's folder, or its file name with or without the extension, in any case of letters -
// and with an empty `active` the first. The active project, which has at least one unit on disk.
//
// Raises EHostError or rtl::EFOpenError for files that cannot be used, and EChoiceError when
// `active` names no project of the group, or more than one.
TProject& OpenProjectForRun(THost& host, std::string_view typed, std::string_view active = {});

// The bare file names of the project's .pas units, in the project's order: all of them with an empty `names`,
// else those of `names`, bare file names in any case of letters. Raises EChoiceError for a name that the
// project lacks.
std::vector<std::string> SelectUnits(const TProject& project, const std::vector<std::string>& names);

}  // namespace host
