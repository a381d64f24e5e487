// Ctrl-C and other requests to stop, which a command looks at between two files.
#pragma once

#include <string>

namespace cli {

// After this call the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) are remembered instead of
// ending it. One that is ignored, as under nohup, stays ignored.
void CatchInterrupts();
// Returns the number of the signal that was received last, or 0.
int PendingInterrupt();
// Raises rtl::EAbort with `message` if a signal was received.
void StopIfInterrupted(const std::string& message);

}  // namespace cli
