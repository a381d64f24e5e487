#include "cli/Interrupt.h"

#include <csignal>

#include "rtl/text/Exceptions.h"

namespace cli {
namespace {

volatile std::sig_atomic_t PendingSignal = 0;

void Remember(int signal) {
  PendingSignal = signal;
}

}  // namespace

void CatchInterrupts() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = Remember;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
  }
}

int PendingInterrupt() {
  return PendingSignal;
}

void StopIfInterrupted(const std::string& message) {
  if (PendingSignal != 0) throw rtl::EAbort(message);
}

}  // namespace cli
