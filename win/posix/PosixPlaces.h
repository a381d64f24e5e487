// Finds the host path for an operation on files.
//
// First tries the path as given, in one system call where possible. Only if there is no such entry, it
// looks for it without regard to case (win/posix/PosixFolders.h).
//
//   THostPath place;
//   if (!places.Locate(path, TPathKind::File, place)) return false;
//   const auto remove = [](const THostPath& at) { return Retry<unlinkat>(at.Base, at.Path.c_str(), 0); };
//   return places.AtPlace(place, remove) == 0 || FailErrno(errno);
#pragma once

#include <cerrno>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unordered_map>

#include "win/posix/PosixFolders.h"
#include "win/posix/PosixPath.h"

namespace win {

// Whether a path may end in a separator.
enum class TPathKind { File, Folder };

// The behaviour of AtPlace if neither the exact name exists nor a recent listing has one that differs in
// case.
enum class TAbsence {
  Verified,  // looks for one that was created since
  Trusted,   // accepts the listing: the caller creates the name, and another can appear after any check
  Assumed    // the same, without a call: the caller opens the name whether it exists or not
};

// For one thread.
class TPosixPlaces {
 public:
  // Finds the host path for a Windows path, spelled as given, except that names lose the dots and blanks at
  // their end if there is no such entry. On failure returns false, with the last error
  // set.
  bool Locate(std::string_view path, TPathKind kind, THostPath& place);

  // Calls `operation`, which returns a negative number and sets errno on failure, with `place` as given (or
  // as a recent listing spells it) and, if there is no such entry, as it is spelled on disk. Returns the
  // result of the last call. After ENOENT the folder of `place` exists and is spelled as on disk, and the
  // name in it is free. If the folder is missing, errno is ENOTDIR.
  template <class TOperation>
  int AtPlace(THostPath& place, const TOperation& operation, TAbsence absence = TAbsence::Verified);

  // Describes the entry at `place`; for a link, the link itself. Returns a negative number, with errno, on
  // failure.
  int StatAt(THostPath& place, struct stat& info, TAbsence absence = TAbsence::Verified);

  // Opens a folder. On failure the result is not open and the last error is set.
  TUniqueFd OpenFolder(std::string_view path);

  // Spells `place`, which exists on `device`, as on disk if the host's own look-up there ignores case.
  void SpellAsOnDisk(THostPath& place, dev_t device);

  TFolderCache& Folders() { return FFolders; }
  const TFolderCache& Folders() const { return FFolders; }

 private:
  bool Shorten(THostPath& place);
  bool FoldsCase(const THostPath& place, dev_t device);

  TFolderCache FFolders;
  std::unordered_map<dev_t, bool> FFoldsCase;
};

template <class TOperation>
int TPosixPlaces::AtPlace(THostPath& place, const TOperation& operation, TAbsence absence) {
  const int base = place.Base;
  const std::string given = place.Path;
  const TFolderCache::TRecent recent = FFolders.LookUpRecent(place);
  if (recent == TFolderCache::TRecent::Absent && absence == TAbsence::Assumed) {
    errno = ENOENT;
    return -1;
  }
  const int first = operation(place);
  if (first >= 0 || errno != ENOENT) return first;
  if (recent == TFolderCache::TRecent::Absent && absence != TAbsence::Verified) return first;
  // The listing is wrong, or the name is a link that leads nowhere.
  if (recent == TFolderCache::TRecent::Present) FFolders.Forget(place);
  for (int attempt = 1;; ++attempt) {
    place.Base = base;
    place.Path = given;
    switch (FFolders.Respell(place)) {
      case TFolderCache::TOutcome::Found:
        break;
      case TFolderCache::TOutcome::NoEntry:
        errno = ENOENT;
        return -1;
      case TFolderCache::TOutcome::NoFolder:
        errno = ENOTDIR;
        return -1;
      case TFolderCache::TOutcome::Failed:
        return -1;
    }
    const int result = operation(place);
    if (result >= 0 || errno != ENOENT) return result;
    // As above. Try once more after reading the folder again.
    if (attempt == 2) return result;
    FFolders.Forget(place);
  }
}

}  // namespace win
