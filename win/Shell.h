// Opens documents with the programs that the user has set for them.
#pragma once

#include <string_view>

namespace win {

// Opens the document `file`, a Windows path, in the user's viewer, without waiting for it. `operation` is
// "open". On failure returns false and sets GetLastError: the file is missing, or no viewer could be started.
bool ShellExecuteA(std::string_view operation, std::string_view file);

}  // namespace win
