// The help texts.
#pragma once

#include <string>

#include "cli/Options.h"

namespace cli {

// Returns the list of commands.
std::string GeneralHelp();
// Returns the options of a command.
std::string CommandHelp(const TCommandRow& command);
// Returns "kvamigrate 1.0.0".
std::string VersionText();

// Returns a synopsis such as "-o, --output FILE".
std::string OptionSynopsis(const TOption& option);

}  // namespace cli
