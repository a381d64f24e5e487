#include "cli/Interrupt.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include "cli/posix/InterruptPipe.h"
#include "rtl/text/Exceptions.h"

namespace cli {
namespace {

volatile std::sig_atomic_t PendingSignal = 0;
int Pipe[2] = {-1, -1};  // the end to read, and the end to write

void Remember(int signal) {
  const int error = errno;
  PendingSignal = signal;
  [[maybe_unused]] const ssize_t count = write(Pipe[1], "", 1);  // a pipe that is full is readable, too
  errno = error;
}

}  // namespace

void CatchInterrupts() {
  // Without a pipe, signals are recorded all the same.
  if (Pipe[0] < 0 && pipe2(Pipe, O_CLOEXEC | O_NONBLOCK) != 0) Pipe[0] = Pipe[1] = -1;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = Remember;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
  }
}

int InterruptPipe() {
  return Pipe[0];
}

int PendingInterrupt() {
  return PendingSignal;
}

void StopIfInterrupted(const std::string& message) {
  if (PendingSignal != 0) throw rtl::EAbort(message);
}

}  // namespace cli
