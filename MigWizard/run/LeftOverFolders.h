// Temporary folders of runs that were killed. They are reported to the user, but never deleted.
#pragma once

#include <string>
#include <vector>

namespace mig {

// Returns a line for the user that names the folders in `taken`, full names, that killed runs have left, each
// with its age. Returns an empty string if there are none. Ignores files, and folders of active runs and of
// other users.
std::string DescribeLeftOverFolders(const std::vector<std::string>& taken);

}  // namespace mig
