// Ctrl-C and its kin, as a request that a command looks at between two files.
#pragma once

namespace cli {

// From here on, the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) are remembered instead of
// ending it.
void CatchInterrupts();
// The number of the signal that came, or 0.
int PendingInterrupt();
// Raises rtl::EAbort if one came.
void StopIfInterrupted();

}  // namespace cli
