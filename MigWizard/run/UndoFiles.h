// Finding the undo files that runs left.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mig {

// Returns the undo files in the folder `dir`, a full Windows path, and in the default backup folders directly
// below it (RBackup, RBackup.2, ...): full names, the last run first. An undo file that lists nothing does not
// count. Where a folder holds the journal of a run that did not end, it takes the undo file's place.
std::vector<std::string> FindUndoFiles(std::string_view dir);

}  // namespace mig
