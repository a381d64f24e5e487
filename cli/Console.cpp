#include "cli/Console.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <string>
#include <unistd.h>

#include "cli/CommandLine.h"
#include "cli/Progress.h"
#include "win/Diagnostics.h"

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

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<size_t>(count));
  }
  return true;
}

}  // namespace

EOutput::EOutput(int error)
    : EWriteError(std::string("Cannot write to standard output: ") + std::strerror(error) + "."),
      FIsBrokenPipe(error == EPIPE) {}

void PrepareConsole() {
  for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(file, F_GETFD) != -1 || errno != EBADF) continue;
    // open returns the lowest free number, which is `file`. The access mode is the wrong one, so that using
    // it fails.
    if (open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY) != file) std::_Exit(kExitException);
  }
  TurnIntoError(SIGPIPE);
  TurnIntoError(SIGXFSZ);
}

void WriteOutput(std::string_view bytes) {
  ClearProgress();
  if (!WriteAll(STDOUT_FILENO, bytes)) throw EOutput(errno);
}

void PrintLine(std::string_view text) {
  WriteOutput(win::PrintableName(text) + "\n");
}

int PrintOutcome(bool succeeded, std::string_view good, std::string_view bad, bool isQuiet) {
  ClearProgress();
  try {
    if (!succeeded) PrintLine(bad);
    if (succeeded && !isQuiet) PrintLine(good);
    return succeeded ? kExitOk : kExitPart;
  } catch (const EOutput& error) {
    Complain(error.what());
    Note(succeeded ? good : bad);
    return kExitException;
  }
}

void Note(std::string_view text) {
  ClearProgress();
  try {
    (void)WriteAll(STDERR_FILENO, win::PrintableName(text) + "\n");
  } catch (const std::bad_alloc&) {
    ComplainOutOfMemory({});
  }
}

void Complain(std::string_view text) {
  try {
    Note(std::string("kvamigrate: ").append(text));
  } catch (const std::bad_alloc&) {
    ComplainOutOfMemory({});
  }
}

void ComplainOutOfMemory(std::string_view fileName) noexcept {
  (void)WriteAll(STDERR_FILENO, "kvamigrate: ");
  try {
    if (!fileName.empty()) (void)WriteAll(STDERR_FILENO, win::PrintableName(fileName) + ": ");
  } catch (const std::bad_alloc&) {  // print the message without the name
  }
  (void)WriteAll(STDERR_FILENO, "There is not enough memory.\n");
}

bool HasControlSequences() {
  const char* const terminal = std::getenv("TERM");
  const char* const noColor = std::getenv("NO_COLOR");
  const bool isPlain = !terminal || std::strcmp(terminal, "dumb") == 0 || (noColor && *noColor);
  return isatty(STDERR_FILENO) == 1 && !isPlain;
}

}  // namespace cli
