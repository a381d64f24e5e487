#include "cli/Interrupt.h"

#include <csignal>

#include "rtl/text/Exceptions.h"

namespace cli {
namespace {

volatile std::sig_atomic_t pendingSignal = 0;

void Remember(int signal) {
  pendingSignal = signal;
}

}  // namespace

void CatchInterrupts() {
  std::signal(SIGINT, Remember);
  std::signal(SIGTERM, Remember);
#ifdef SIGHUP
  std::signal(SIGHUP, Remember);
#endif
}

int PendingInterrupt() {
  return pendingSignal;
}

void StopIfInterrupted() {
  if (pendingSignal != 0) throw rtl::EAbort("Stopped: no file was replaced.");
}

}  // namespace cli
