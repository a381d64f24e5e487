#include "win/posix/PosixLock.h"

#include <cerrno>
#include <sys/file.h>

namespace win {

TLocking TryLock(int fd) {
  if (Retry<flock>(fd, LOCK_EX | LOCK_NB) == 0) return TLocking::Locked;
  switch (errno) {
    case EAGAIN:
      return TLocking::HeldByOther;
    case EBADF:  // some network volumes lock only what is open for writing
    case EINVAL:
    case ENOLCK:
    case ENOSYS:
    case ENOTSUP:
      return TLocking::Unsupported;
    default:
      return TLocking::Failed;
  }
}

bool LockExclusively(int fd) {
  const TLocking locking = TryLock(fd);
  return locking == TLocking::Locked || locking == TLocking::Unsupported;
}

void Unlock(int fd) {
  Retry<flock>(fd, LOCK_UN);
}

}  // namespace win
