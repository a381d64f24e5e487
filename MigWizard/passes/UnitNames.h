// Decides by the name of a file whether it is a unit, ignoring case.
#pragma once

#include <string_view>

namespace mig {

// Returns True for a module of a project that is a unit: its last four characters are ".pas".
bool IsUnitModule(std::string_view fileName);
// Returns True for a source that the unit pass converts: its extension is ".pas" or ".dpr".
bool IsUnitSource(std::string_view fileName);

}  // namespace mig
