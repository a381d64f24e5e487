// A file that is written under a temporary name in its target's folder and then takes the target's name.
//
// The temporary file is locked until it has the target's name or is deleted. So a temporary file that can be
// locked was left by a process that no longer runs, and may be deleted. Where the file is exchanged for its
// target, the temporary name ends in '~' and records the states of both files. Such a file is deleted only if
// it is one of them and the process of that name no longer runs: anything else is the edit of another writer.
#pragma once

#include <string>
#include <sys/stat.h>

#include "win/posix/PosixFd.h"
#include "win/posix/PosixPath.h"

namespace win {

class TTemporaryFile {
 public:
  // `target` must outlive the object.
  explicit TTemporaryFile(const THostPath& target) : FTarget(target) {}
  // Deletes the file unless it has taken the target's name.
  ~TTemporaryFile();
  TTemporaryFile(const TTemporaryFile&) = delete;
  TTemporaryFile& operator=(const TTemporaryFile&) = delete;

  // Creates the file with the permission bits `mode`, as far as the process's mask allows, and describes it
  // in `info`. On failure returns false, with errno. The name is short however long the target's is, and has
  // an extension that no run looks for.
  bool Create(mode_t mode, struct stat& info);

  // Renames the file `source`, on the same volume and with the stamp `own`, so that RenameToUnchanged, with
  // the same `expected`, gives it the target's name. On failure returns false, with errno, and `source` is
  // unchanged. Always fails on hosts that cannot rename without replacing another file.
  bool Adopt(const THostPath& source, const TFileStamp& own, const TFileStamp& expected);

  int Fd() const { return FFd.Get(); }

  // Returns false, with errno, if written bytes could not be stored. Some file systems report that only
  // when a descriptor is closed.
  bool Finish();

  // Renames the file to the target, in one step. With `onlyIfFree`, fails with EEXIST where there is a file
  // of that name. On failure returns false, with errno, and the target is unchanged.
  bool RenameToTarget(bool onlyIfFree);

  // As RenameToTarget, but only if the target has the stamp `expected`. Otherwise fails with ESTALE.
  bool RenameToUnchanged(const TFileStamp& expected);

 private:
  const THostPath& FTarget;
  TUniqueFd FFd;      // not open for an adopted file
  std::string FPath;  // seen from the target's base; empty if there is no file to delete
};

// Deletes the temporary files left in the folder of `target` by processes that no longer run. Skips files
// whose state is uncertain. Reports nothing.
void SweepTemporaryFiles(const THostPath& target);

}  // namespace win
