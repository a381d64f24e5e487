// Advisory locks on files and folders that are open.
#pragma once

#include <utility>

#include "win/FileSystem.h"
#include "win/posix/PosixFd.h"

namespace win {

// Locks the file or folder open as `fd`, without waiting. On failure returns false, with errno; EAGAIN if
// somebody holds the lock. Where the volume has no locks, returns true and locks nothing.
[[nodiscard]] bool LockExclusively(int fd);

// Releases the lock, also where duplicates of `fd` remain open.
void Unlock(int fd);

// Holds a lock that LockExclusively has taken.
class TPosixLock : public TFileLock {
 public:
  explicit TPosixLock(TUniqueFd locked) : FLocked(std::move(locked)) {}
  ~TPosixLock() override { Unlock(FLocked.Get()); }

 private:
  TUniqueFd FLocked;
};

}  // namespace win
