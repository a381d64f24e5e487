// Lets a process that waits for input notice a request to stop.
#pragma once

#include "win/windows/WindowsApi.h"

namespace cli {

// Returns an event that is set from the first request on that CatchInterrupts recorded. Wait for it together
// with the input. Do not close it.
HANDLE InterruptEvent();

}  // namespace cli
