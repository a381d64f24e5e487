// The help texts and the manual page.
#pragma once

#include <string>

#include "cli/Options.h"

namespace cli {

// The list of commands.
std::string GeneralHelp();
// The options of a command.
std::string CommandHelp(const TCommandRow& command);
// All of it in the format of man(7).
std::string ManPage();
// "kvamigrate 1.0.0"
std::string VersionText();

// "-o, --output FILE"
std::string OptionSynopsis(const TOption& option);

}  // namespace cli
