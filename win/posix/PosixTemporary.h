// A file that is written under a temporary name in its target's folder and then takes the target's name.
#pragma once

#include <string>

#include "win/posix/PosixFd.h"
#include "win/posix/PosixPlace.h"

namespace win {

class TTemporaryFile {
 public:
  // `target` must outlive the object.
  explicit TTemporaryFile(const TPlace& target) : FTarget(target) {}
  // Deletes the file unless it has taken the target's name.
  ~TTemporaryFile();
  TTemporaryFile(const TTemporaryFile&) = delete;
  TTemporaryFile& operator=(const TTemporaryFile&) = delete;

  // Creates the file, readable and writable for its owner alone. On failure returns false, with errno. The name
  // is short however long the target's is, and has an extension that no run looks for.
  bool Create();

  int Fd() const { return FFd.Get(); }

  // Closes the file. On failure returns false, with errno: some file systems report only then that there was no
  // room for what was written.
  bool Close() { return FFd.Close(); }

  // Renames the file to the target, in one step. With `onlyIfFree`, fails with EEXIST where there is a file of
  // that name. On failure returns false, with errno, and the target is as it was.
  bool TakeName(bool onlyIfFree);

 private:
  const TPlace& FTarget;
  TUniqueFd FFd;
  std::string FPath;  // seen from the target's base; empty if there is no file to delete
};

}  // namespace win
