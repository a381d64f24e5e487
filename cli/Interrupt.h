// Ctrl-C and other requests to stop. A command checks for them between two files.
#pragma once

#include <string>

namespace cli {

// After this call the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) are recorded instead of
// ending it. A signal that is ignored, as under nohup, stays ignored.
void CatchInterrupts();
// Returns the number of the last signal received, or 0.
int PendingInterrupt();
// Raises rtl::EAbort with `message` if a signal was received.
void StopIfInterrupted(const std::string& message);

}  // namespace cli
