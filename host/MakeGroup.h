// The older project group, .bpg: a make file whose macro PROJECTS lists targets, with a rule for each
// target that names its project file.
#pragma once

#include <string_view>
#include <vector>

#include "host/FileReference.h"

namespace host {

// Returns the projects in the order of PROJECTS. `text` is UTF-8, `fileName` is for messages. Raises
// EHostError, with the line, for a text without PROJECTS and for a target without a rule.
std::vector<TFileReference> ReadBpg(std::string_view text, std::string_view fileName);

}  // namespace host
