// A place among the host's files: a path as the system calls take it.
#pragma once

#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "win/FileSystem.h"
#include "win/posix/PosixFd.h"

namespace win {

// To open a folder only to go on from it.
#ifdef O_PATH
inline constexpr int kPassThrough = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
inline constexpr int kPassThrough = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

// To open a folder for reading its entries, locking it, or bringing it to the disk.
inline constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// Whether two descriptions are of the same file.
inline bool IsSameFile(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

TFileStamp FileStampOf(const struct stat& info);

class TFolderListing;

// `Path` in its shortest spelling, without a separator at its end, seen from the folder `Base`. Every system
// call takes the two together (openat and its like).
struct TPlace {
  int Base = AT_FDCWD;
  std::string Path;
  // Open where `Base` is a folder on the way: of a path too long for the system, or the one that holds the
  // name.
  std::shared_ptr<const TUniqueFd> BaseOwner;
  std::string FullPath;  // in the latter case: the whole path, as seen from the present folder
  // The listing of the place's folder that was just found current, or null; it holds until the next look-up.
  TFolderListing* Listing = nullptr;

  // Goes back to the whole path where the folder that holds the name is open.
  void Widen() {
    if (FullPath.empty()) return;
    Base = AT_FDCWD;
    Path = std::exchange(FullPath, {});
  }

  // The part up to and with the last separator; empty for a name in `Base` itself.
  std::string_view Folder() const { return std::string_view(Path).substr(0, LeafStart()); }
  // The same as an argument of a system call: "." where it is empty.
  std::string FolderPath() const { return LeafStart() == 0 ? std::string(".") : std::string(Folder()); }
  std::string_view Leaf() const { return std::string_view(Path).substr(LeafStart()); }
  size_t LeafStart() const { return Path.rfind('/') + 1; }  // npos + 1 is 0
};

}  // namespace win
