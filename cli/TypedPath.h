// A path that the user typed.
#pragma once

#include <string>

namespace cli {

// Returns the full Windows path for a host path or a Windows path. Raises EUsage if there is none.
std::string WindowsPath(const std::string& typed);

// Raises rtl::EFOpenError if the system denies access to the full Windows path, so that it is unknown
// whether it exists. Does nothing if nothing exists there.
void RequireReachable(const std::string& path);

}  // namespace cli
