#include "cli/Pager.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace cli {
namespace {

// Replaces this process by a shell that runs `command`, which reads from `input`.
[[noreturn]] void BecomeShell(int input, const char* command) {
  dup2(input, STDIN_FILENO);
  execl("/bin/sh", "sh", "-c", command, nullptr);
  _exit(127);
}

}  // namespace

void TPager::Finish() {
  if (FPipe < 0) return;
  close(FPipe);
  FPipe = -1;
  while (waitpid(FProcess, nullptr, 0) < 0 && errno == EINTR) {
  }
}

bool TPager::Start() {
  const char* const pager = std::getenv("PAGER");
  if (pager != nullptr && *pager == '\0') return false;
  // 127 is the status of the shell if there is no such program.
  const std::string command = std::string("export LESS=\"${LESS-FRX}\"\n") +
                              (pager != nullptr ? pager : "less") + "\n[ $? -ne 127 ] || exec cat";
  int ends[2];
  if (FPipe < 0 && pipe(ends) == 0) {
    FProcess = fork();
    if (FProcess == 0) {
      close(ends[1]);
      BecomeShell(ends[0], command.c_str());
    }
    close(ends[0]);
    FPipe = ends[1];
  }
  return FPipe >= 0;
}

void TPager::Write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(FPipe, text.data(), text.size());
    if (count < 0 && errno != EINTR) return;
    if (count > 0) text.remove_prefix(static_cast<size_t>(count));
  }
}

}  // namespace cli
