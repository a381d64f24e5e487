// Reads the beginning of a form file: which form it holds.
#pragma once

#include <string>
#include <string_view>

namespace desktop {

// Returns the name and the class of the outermost object, as "MainForm: TMainForm", in UTF-8, or an empty
// string if the file is not a form or cannot be read. Reads the first kilobyte only; `fileName` is a full
// Windows path.
std::string FormSummary(std::string_view fileName);

// The same for the first bytes of a form file.
std::string FormSummaryOf(std::string bytes);

}  // namespace desktop
