// A path that the user typed.
#pragma once

#include <string>

namespace cli {

// Returns the full Windows path of a host path or a Windows path. Raises EUsage if there is none.
std::string WindowsPath(const std::string& typed);

}  // namespace cli
