// A path that the user typed.
#pragma once

#include <string>

namespace cli {

// The full Windows path for a host path or a Windows path. Raises EUsage if it cannot be written as one.
std::string WindowsPath(const std::string& typed);

}  // namespace cli
