#include "cli/Interrupt.h"

#include <atomic>
#include <csignal>

#include "cli/windows/InterruptEvent.h"
#include "rtl/text/Exceptions.h"

namespace cli {
namespace {

std::atomic<int> PendingEvent = 0;

// Runs on a thread of the system's.
BOOL WINAPI Remember(DWORD event) {
  const bool isKey = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
  PendingEvent = isKey ? SIGINT : SIGTERM;
  SetEvent(InterruptEvent());
  // The system ends the process when this function returns from the closing of the window, the end of the
  // session or of the machine, and after some seconds in any case. Until then the run is brought to its end.
  if (!isKey) Sleep(INFINITE);
  return TRUE;
}

}  // namespace

HANDLE InterruptEvent() {
  static const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  return event;
}

void CatchInterrupts() {
  (void)InterruptEvent();  // created before its handler can run
  SetConsoleCtrlHandler(Remember, TRUE);
}

int PendingInterrupt() {
  return PendingEvent;
}

void StopIfInterrupted(const std::string& message) {
  if (PendingEvent != 0) throw rtl::EAbort(message);
}

}  // namespace cli
