// A host path in the form that system calls take.
#pragma once

#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "win/FileSystem.h"
#include "win/posix/PosixFd.h"

namespace win {

// Flags for opening a folder as the base of other calls.
#ifdef O_PATH
inline constexpr int kPassThrough = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
inline constexpr int kPassThrough = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

// Flags for opening a folder to read its entries, lock it, or flush it.
inline constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Returns whether `c` separates the components of a Windows path.
inline bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

// Returns whether the host has an entry of exactly that name, relative to the process's folder.
inline bool IsTaken(const std::string& name) {
  struct stat info {};
  return Retry<lstat>(name.c_str(), &info) == 0 || errno != ENOENT;
}

// Returns whether both describe the same file.
inline bool IsSameFile(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

class TFolderListing;

// `Path`, in its shortest spelling and without a separator at its end, is relative to the open folder `Base`.
// Each system call takes the two together, as openat does.
struct THostPath {
  int Base = AT_FDCWD;
  std::string Path;
  // Keeps `Base` open if it is an intermediate folder of a path that is too long for the system.
  std::shared_ptr<const TUniqueFd> BaseOwner;
  // The listing of the folder if it was just found to be valid, else null. It lives until the next look-up.
  TFolderListing* Listing = nullptr;

  // Returns the part up to and including the last separator; empty for a name in `Base` itself.
  std::string_view Folder() const { return std::string_view(Path).substr(0, LeafStart()); }
  // Returns Folder() as an argument of a system call: "." instead of an empty path.
  std::string FolderPath() const { return LeafStart() == 0 ? std::string(".") : std::string(Folder()); }
  std::string_view Leaf() const { return std::string_view(Path).substr(LeafStart()); }
  size_t LeafStart() const { return Path.rfind('/') + 1; }  // npos + 1 is 0
};

}  // namespace win
