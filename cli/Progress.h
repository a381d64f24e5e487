// The progress line of a long command: files done, files known, and the name of the present file, on
// standard error. Nothing is written unless that is a terminal that knows control sequences.
#pragma once

#include <string_view>

namespace cli {

// Replaces the line, at most twenty times a second.
void ShowProgress(int done, int known, std::string_view fileName);
// Removes the line, so that other text can be written.
void ClearProgress();

}  // namespace cli
