// Reading the entries of a folder.
#pragma once

#include <dirent.h>
#include <memory>

#include "win/posix/PosixFd.h"

namespace win {

// Example:
//   TPosixDirectory folder(TUniqueFd(open("/tmp", kOpenFolder)));
//   while (const dirent* entry = folder.Next()) Use(entry->d_name);
//   if (folder.Error() != 0) return FailErrno(folder.Error());
class TPosixDirectory {
 public:
  // Takes an open folder. One that is not open counts as a failure with the present errno.
  explicit TPosixDirectory(TUniqueFd folder);

  // Returns the next entry except "." and "..", or null at the end and after a failure. The entry is valid
  // until the next call.
  const dirent* Next();

  // Returns the errno of the first failure, 0 if there was none.
  int Error() const { return FError; }

  // Returns the descriptor of the open folder. Requires that the constructor has not failed.
  int Fd() const { return dirfd(FDirectory.get()); }

 private:
  struct TCloser {
    void operator()(DIR* directory) const { closedir(directory); }
  };

  std::unique_ptr<DIR, TCloser> FDirectory;
  int FError = 0;
};

}  // namespace win
