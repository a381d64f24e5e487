#include <cerrno>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "win/Errors.h"
#include "win/FileSystem.h"
#include "win/Shell.h"
#include "win/paths/Drives.h"

namespace win {
namespace {

#ifdef __APPLE__
constexpr const char* kViewer = "open";
#else
constexpr const char* kViewer = "xdg-open";
#endif

// Replaces this process by the viewer; on failure writes a byte to `report`. Makes only calls that are safe
// after a fork.
[[noreturn]] void BecomeViewer(const char* file, int report) {
  setsid();
  const int null = open("/dev/null", O_RDWR);
  if (null >= 0) {
    for (int fd = 0; fd <= 2; ++fd) dup2(null, fd);
    if (null > 2) close(null);
  }
  execlp(kViewer, kViewer, file, static_cast<char*>(nullptr));
  const char failed = 1;
  [[maybe_unused]] const ssize_t written = write(report, &failed, 1);
  _exit(127);
}

}  // namespace

bool ShellExecuteA(std::string_view operation, std::string_view file) {
  const std::string windowsPath = ToWindowsPath(FileSystem().GetLongPathNameA(file));
  if (operation != "open" || windowsPath.empty()) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return false;
  }
  if (FileSystem().GetFileAttributesA(windowsPath) == INVALID_FILE_ATTRIBUTES) return false;
  const std::string host = ToHostName(windowsPath);
  int report[2];
  if (pipe(report) != 0) {
    SetLastError(ERROR_TOO_MANY_OPEN_FILES);
    return false;
  }
  for (const int fd : report) fcntl(fd, F_SETFD, FD_CLOEXEC);
  // Fork twice, so that the viewer is no child of this process, which would otherwise have to wait for it.
  const pid_t child = fork();
  if (child == 0) {
    if (fork() == 0) BecomeViewer(host.c_str(), report[1]);
    _exit(0);
  }
  close(report[1]);
  char failed = '\0';
  if (child < 0) failed = '\1';
  if (child > 0) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    while (read(report[0], &failed, 1) < 0 && errno == EINTR) {
    }
  }
  close(report[0]);
  if (failed) SetLastError(ERROR_FILE_NOT_FOUND);
  return !failed;
}

}  // namespace win
