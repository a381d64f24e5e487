// Starting the program with the wizard's dialog.
#pragma once

#include <string>
#include <vector>

namespace cli {

// Runs the desktop program `name`, which is looked for beside this one and in the search path, with
// `arguments`, which do not include its name. Returns its exit status, or does not return if the host lets it
// take the place of this process. Returns -1 if it cannot be started.
int RunDesktopProgram(const std::string& name, const std::vector<std::string>& arguments);

}  // namespace cli
