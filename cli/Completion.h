// Shell completion of commands, options and their values.
#pragma once

#include <string>
#include <string_view>

namespace cli {

// Returns the script for "bash", "zsh" or "fish".
std::string CompletionScript(std::string_view shell);

}  // namespace cli
