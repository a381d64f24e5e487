#include "win/posix/PosixPlaces.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <limits.h>
#ifdef __linux__
#include <sys/vfs.h>
#endif

#include "win/Errors.h"
#include "win/paths/Drives.h"
#include "win/paths/PathComponents.h"
#include "win/posix/PosixErrors.h"

namespace win {
namespace {

// The system takes PATH_MAX bytes with the NUL. The rest is for the names of temporary files.
constexpr size_t kLongestPath = PATH_MAX - 64;

}  // namespace

bool TPosixPlaces::Locate(std::string_view path, TPathKind kind, THostPath& place) {
  if (path.find('\0') != std::string_view::npos) return Fail(ERROR_INVALID_NAME);
  place.Path = ToHostName(path);
  if (place.Path.empty()) return Fail(ERROR_PATH_NOT_FOUND);
  if (kind == TPathKind::File && IsSeparator(path.back())) return Fail(ERROR_INVALID_NAME);
  if (!TrimComponents(place.Path, 0, kHostSeparators, IsTaken)) return Fail(ERROR_INVALID_NAME);
  return place.Path.size() <= kLongestPath || Shorten(place);
}

// Opens folders along the path until the rest of it is short enough.
bool TPosixPlaces::Shorten(THostPath& place) {
  while (place.Path.size() > kLongestPath) {
    const size_t end = place.Path.rfind('/', kLongestPath);
    if (end == std::string::npos || end == 0) return Fail(ERROR_FILENAME_EXCED_RANGE);
    THostPath part;
    part.Base = place.Base;
    part.Path = place.Path.substr(0, end);
    TUniqueFd folder(AtPlace(
        part, [](const THostPath& at) { return Retry<openat>(at.Base, at.Path.c_str(), kPassThrough); }));
    if (!folder.IsOpen()) return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
    place.BaseOwner = std::make_shared<const TUniqueFd>(std::move(folder));
    place.Base = place.BaseOwner->Get();
    place.Path.erase(0, end + 1);
  }
  return true;
}

int TPosixPlaces::StatAt(THostPath& place, struct stat& info, TAbsence absence) {
  const auto operation = [&info](const THostPath& at) {
    return Retry<fstatat>(at.Base, at.Path.c_str(), &info, AT_SYMLINK_NOFOLLOW);
  };
  return AtPlace(place, operation, absence);
}

TUniqueFd TPosixPlaces::OpenFolder(std::string_view path) {
  THostPath place;
  if (!Locate(path, TPathKind::Folder, place)) return {};
  TUniqueFd folder(AtPlace(
      place, [](const THostPath& at) { return Retry<openat>(at.Base, at.Path.c_str(), kOpenFolder); }));
  if (!folder.IsOpen()) errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  return folder;
}

// Returns whether the host's own look-up on the device ignores case, so that a path may be found although
// it is spelled differently on disk. Queries each device once.
bool TPosixPlaces::FoldsCase(const THostPath& place, dev_t device) {
  const auto [known, isNew] = FFoldsCase.try_emplace(device, false);
  if (!isNew) return known->second;
#ifdef __linux__
  constexpr unsigned long kFolding[] = {
      0x4D44 /* FAT */,        0x2011BAB0 /* exFAT */, 0x5346544E /* NTFS */,
      0x7366746E /* NTFS 3 */, 0x65735546 /* FUSE */,  0xFF534D42 /* CIFS */,
      0xFE534D42 /* SMB 2 */,  0x517B /* SMB */,       0x482B /* HFS+ */};
  struct statfs system {};
  const TUniqueFd fd(Retry<openat>(place.Base, place.FolderPath().c_str(), kPassThrough));
  if (!fd.IsOpen() || Retry<fstatfs>(fd.Get(), &system) != 0) {
    FFoldsCase.erase(known);
    return false;
  }
  const auto kind = static_cast<unsigned long>(system.f_type) & 0xFFFFFFFF;
  known->second = std::find(std::begin(kFolding), std::end(kFolding), kind) != std::end(kFolding);
#else
  static_cast<void>(place);
  known->second = true;
#endif
  return known->second;
}

void TPosixPlaces::SpellAsOnDisk(THostPath& place, dev_t device) {
  if (!FoldsCase(place, device)) return;
  FFolders.SpellAll(place);
}

}  // namespace win
