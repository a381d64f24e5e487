// Advisory locks on files and folders that are open.
#pragma once

#include <utility>

#include "win/FileSystem.h"
#include "win/posix/PosixFd.h"

namespace win {

// The result of TryLock. errno is set for HeldByOther (EAGAIN), Unsupported and Failed.
enum class TLocking { Locked, HeldByOther, Unsupported, Failed };

// Locks the file or folder open as `fd` exclusively, without waiting.
[[nodiscard]] TLocking TryLock(int fd);

// As TryLock, but succeeds on a volume without locks, where nothing is locked. On failure returns false,
// with errno; EAGAIN if another handle holds the lock.
[[nodiscard]] bool LockExclusively(int fd);

// Releases the lock, even if duplicates of `fd` remain open.
void Unlock(int fd);

// Owns a lock that was taken on an open file or folder.
class TPosixLock : public TFileLock {
 public:
  explicit TPosixLock(TUniqueFd locked) : FLocked(std::move(locked)) {}
  ~TPosixLock() override { Unlock(FLocked.Get()); }

 private:
  TUniqueFd FLocked;
};

}  // namespace win
