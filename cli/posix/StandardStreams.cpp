#include "cli/StandardStreams.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "cli/CommandLine.h"
#include "cli/Interrupt.h"
#include "cli/posix/InterruptPipe.h"

namespace cli {
namespace {

// An empty handler: unlike SIG_IGN, it is not inherited by the programs that this one starts.
void DoNothing(int) {}

void TurnIntoError(int signal) {
  struct sigaction action {};
  if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
  action = {};
  action.sa_handler = DoNothing;
  action.sa_flags = SA_RESTART;
  sigaction(signal, &action, nullptr);
}

int Descriptor(TStream stream) {
  return stream == TStream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

}  // namespace

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

void PrepareStreams() {
  for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(file, F_GETFD) != -1 || errno != EBADF) continue;
    // open returns the lowest free number, which is `file`. The access mode is the wrong one, so that using
    // it fails.
    if (open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY) != file) std::_Exit(kExitException);
  }
  TurnIntoError(SIGPIPE);
  TurnIntoError(SIGXFSZ);
}

int WriteStream(TStream stream, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t count = write(Descriptor(stream), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    bytes.remove_prefix(static_cast<size_t>(count));
  }
  return 0;
}

std::string StreamError(int error) {
  return std::strerror(error);
}

bool IsBrokenPipe(int error) {
  return error == EPIPE;
}

bool CanAsk() {
  return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
}

TInput ReadInput(char& byte) {
  pollfd waited[] = {{STDIN_FILENO, POLLIN, 0}, {InterruptPipe(), POLLIN, 0}};
  while (poll(waited, 2, -1) < 0) {
    if (errno != EINTR) return TInput::End;
    if (PendingInterrupt() != 0) return TInput::Interrupted;
  }
  if (waited[1].revents != 0) return TInput::Interrupted;
  return read(STDIN_FILENO, &byte, 1) == 1 ? TInput::Byte : TInput::End;
}

bool IsTerminal(TStream stream) {
  const char* const terminal = std::getenv("TERM");
  return isatty(Descriptor(stream)) == 1 && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

size_t TerminalWidth(TStream stream) {
  winsize size{};
  const bool known = ioctl(Descriptor(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

}  // namespace cli
