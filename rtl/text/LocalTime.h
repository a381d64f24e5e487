// The time as the user reads it.
#pragma once

#include <string>

namespace rtl {

// Returns the current date and time in the user's locale: short date, long time. Defined in the host's
// folder.
std::string DateTimeNowToStr();

}  // namespace rtl
