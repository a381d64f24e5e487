#include "win/posix/PosixLock.h"

#include <cerrno>
#include <sys/file.h>

namespace win {

bool LockExclusively(int fd) {
  while (flock(fd, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    // EBADF is a folder on a network volume, which locks only what is open for writing.
    return errno == ENOLCK || errno == ENOTSUP || errno == ENOSYS || errno == EINVAL || errno == EBADF;
  }
  return true;
}

void Unlock(int fd) {
  flock(fd, LOCK_UN);
}

}  // namespace win
