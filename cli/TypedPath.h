// A path that the user typed.
#pragma once

#include <string>

namespace cli {

// Returns the full Windows path of a host path or a Windows path. Raises EUsage if there is none.
std::string WindowsPath(const std::string& typed);

// Raises rtl::EFOpenError if there may be something at the full Windows path, but the system does not let it be
// looked at. Does nothing if there is nothing.
void RequireReachable(const std::string& path);

}  // namespace cli
