// The progress line of a long command on standard error: files done, files found, and the name of the
// current file. Prints nothing unless standard error is a terminal that supports control sequences.
#pragma once

#include <string_view>

namespace cli {

// Updates the line if it changes, at most twenty times a second.
void ShowProgress(int done, int known, std::string_view fileName);
// Removes the line, before other text is written.
void ClearProgress();

}  // namespace cli
