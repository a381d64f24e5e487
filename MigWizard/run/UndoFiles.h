// Finds the undo files of earlier runs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mig {

// Returns the undo files in the folder `dir`, a full Windows path, and in the default backup folders directly
// below it (RBackup, RBackup.2, ...): full names, the last run first. Ignores empty undo files. If a folder
// holds the journal of a run that did not end, returns the journal instead of the undo file.
std::vector<std::string> FindUndoFiles(std::string_view dir);

}  // namespace mig
