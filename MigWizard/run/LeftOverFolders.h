// Temporary folders of runs that were killed. They are never deleted here, but the user is told of them.
#pragma once

#include <string>
#include <vector>

namespace mig {

// Returns a line for the user that names the folders in `taken`, full names, that a run has left behind, each
// with its age. Returns an empty string if there are none. Folders of runs that are still at work, of other
// users and other files do not count.
std::string DescribeLeftOverFolders(const std::vector<std::string>& taken);

}  // namespace mig
