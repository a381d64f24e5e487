// Which files are units, by their names, in any case of letters.
#pragma once

#include <string_view>

namespace mig {

// A module of a project: its last four characters are ".pas".
bool IsUnitModule(std::string_view fileName);
// A source that the unit pass takes: its extension is ".pas" or ".dpr".
bool IsUnitSource(std::string_view fileName);

}  // namespace mig
