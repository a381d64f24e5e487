// The manual page.
#pragma once

#include <string>

namespace cli {

// Returns all help texts in the format of man(7).
std::string ManPage();

}  // namespace cli
