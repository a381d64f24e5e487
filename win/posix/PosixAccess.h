// Access to files: owner, group, permission bits, access list.
#pragma once

#include <sys/stat.h>

#include "win/posix/PosixPath.h"

namespace win {

// Copies the attributes of the file `existing` at `target`, except its contents, to the file open as `fd`,
// which `own` describes: owner and group, access list, labels. Skips those that the process may not set.
void KeepIdentity(const THostPath& target, const struct stat& existing, int fd, const struct stat& own);

// Gives the file open as `to`, which `own` describes, the permission bits, group and access list of the file
// open as `from`, which `source` describes, and its owner where the process may set it. Where they cannot be
// set and the source is not readable by everybody, the file becomes readable for its owner alone. On failure
// returns false, with errno; then only the owner can read it, as before. `to` must have been created with
// mode 0600.
[[nodiscard]] bool CopyAccess(int from, const struct stat& source, int to, const struct stat& own);

// Sets the permission bits of `source`. On failure returns false, with errno. Succeeds on file systems
// without permissions, such as FAT.
[[nodiscard]] bool SetPermissions(int fd, const struct stat& source);

// Gives the file at `place`, which `own` describes, the permission bits of `source`, if it has others. On
// failure returns false, with errno.
[[nodiscard]] bool SetPermissions(const THostPath& place, const struct stat& own, const struct stat& source);

// Sets the last-write time of `source`. On failure returns false, with errno.
[[nodiscard]] bool SetWriteTime(int fd, const struct stat& source);

// Returns whether the file at `place` has an access list or other labels, or whether that is unknown.
[[nodiscard]] bool HasLabels(const THostPath& place);

}  // namespace win
