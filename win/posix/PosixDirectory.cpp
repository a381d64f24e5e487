#include "win/posix/PosixDirectory.h"

#include <cerrno>
#include <string_view>

namespace win {

TPosixDirectory::TPosixDirectory(TUniqueFd folder) : FError(folder.IsOpen() ? 0 : errno) {
  while (FError == 0 && !FDirectory) {
    FDirectory.reset(fdopendir(folder.Get()));
    if (!FDirectory && errno != EINTR) FError = errno;
  }
  if (FDirectory) folder.Release();
}

const dirent* TPosixDirectory::Next() {
  while (FError == 0) {
    errno = 0;
    const dirent* const entry = readdir(FDirectory.get());
    if (!entry && errno == EINTR) continue;
    if (!entry) {
      FError = errno;
      break;
    }
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return entry;
  }
  return nullptr;
}

}  // namespace win
