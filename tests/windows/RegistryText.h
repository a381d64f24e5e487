// The settings in the user's registry as a text of "[section]" and "key=value", as other hosts store them.
#pragma once

#include <string>
#include <string_view>

namespace tests {

// Returns "(missing)" if there are no settings. The values of a section are in the order of the registry.
std::string ReadRegistry();
// Replaces all settings.
void WriteRegistry(std::string_view text);

}  // namespace tests
