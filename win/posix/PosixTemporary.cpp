#include "win/posix/PosixTemporary.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <utility>

namespace win {

TTemporaryFile::~TTemporaryFile() {
  if (!FPath.empty()) unlinkat(FTarget.Base, FPath.c_str(), 0);
}

bool TTemporaryFile::Create() {
  static const auto process = static_cast<unsigned long>(getpid());
  static std::atomic<unsigned> counter = 0;
  for (;;) {
    char name[40];
    std::snprintf(name, sizeof name, "~kva%lx-%x.$$$", process, counter.fetch_add(1));
    std::string path(FTarget.Folder());
    path += name;
    FFd = TUniqueFd(openat(FTarget.Base, path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (FFd.IsOpen()) {
      FPath = std::move(path);
      return true;
    }
    if (errno != EEXIST && errno != EINTR) return false;
  }
}

bool TTemporaryFile::TakeName(bool onlyIfFree) {
  const char* const name = FTarget.Path.c_str();
  if (onlyIfFree) {
    // A second name, which cannot hide another file. The destructor deletes the first one.
    if (linkat(FTarget.Base, FPath.c_str(), FTarget.Base, name, 0) == 0) return true;
    if (errno != EPERM && errno != ENOTSUP) return false;
  }
  if (renameat(FTarget.Base, FPath.c_str(), FTarget.Base, name) != 0) return false;
  FPath.clear();
  return true;
}

}  // namespace win
