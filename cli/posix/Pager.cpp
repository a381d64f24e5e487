#include "cli/Pager.h"

#include <cerrno>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace cli {
namespace {

// Replaces this process by the pager, which reads from `input`.
[[noreturn]] void BecomePager(int input) {
  dup2(input, STDIN_FILENO);
  setenv("LESS", "FRX", /*overwrite=*/0);
  const char* const pager = std::getenv("PAGER");
  execl("/bin/sh", "sh", "-c", pager != nullptr ? pager : "less || cat", nullptr);
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
  int ends[2];
  if (FPipe < 0 && pipe(ends) == 0) {
    FProcess = fork();
    if (FProcess == 0) {
      close(ends[1]);
      BecomePager(ends[0]);
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
