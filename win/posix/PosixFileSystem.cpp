#include "win/posix/PosixFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <limits.h>
#include <stdlib.h>
#ifdef __linux__
#include <sys/vfs.h>
#endif

#include "win/Errors.h"
#include "win/paths/Drives.h"
#include "win/posix/PosixErrors.h"
#include "win/posix/PosixLock.h"

namespace win {
namespace {

// The system takes PATH_MAX bytes with the NUL. The rest is for the names of temporary files.
constexpr size_t kLongestPath = PATH_MAX - 64;

bool IsSeparator(char c) {
  return c == '\\' || c == '/';
}

}  // namespace

std::unique_ptr<TFileSystem> AnotherHostFileSystem() {
  return std::make_unique<TPosixFileSystem>();
}

bool TPosixFileSystem::Locate(std::string_view path, TKind kind, THostPath& place) {
  if (path.find('\0') != std::string_view::npos) return Fail(ERROR_INVALID_NAME);
  place.Path = ToHostName(path);
  if (place.Path.empty()) return Fail(ERROR_PATH_NOT_FOUND);
  if (kind == TKind::File && IsSeparator(path.back())) return Fail(ERROR_INVALID_NAME);
  return place.Path.size() <= kLongestPath || Shorten(place);
}

// Opens folders along the path until the rest of it is short enough.
bool TPosixFileSystem::Shorten(THostPath& place) {
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

int TPosixFileSystem::StatAt(THostPath& place, struct stat& info, TAbsence absence) {
  const auto operation = [&info](const THostPath& at) {
    return Retry<fstatat>(at.Base, at.Path.c_str(), &info, AT_SYMLINK_NOFOLLOW);
  };
  return AtPlace(place, operation, absence);
}

uint32_t TPosixFileSystem::GetFileAttributesA(std::string_view path) {
  THostPath place;
  struct stat info {};
  if (!Locate(path, TKind::Folder, place)) return INVALID_FILE_ATTRIBUTES;
  if (StatAt(place, info) < 0) {
    FailErrno(errno);
    return INVALID_FILE_ATTRIBUTES;
  }
  uint32_t attributes = 0;
  if (S_ISLNK(info.st_mode)) {
    if (Retry<fstatat>(place.Base, place.Path.c_str(), &info, 0) != 0) {
      FailErrno(errno);
      return INVALID_FILE_ATTRIBUTES;
    }
    if (S_ISDIR(info.st_mode)) attributes = FILE_ATTRIBUTE_REPARSE_POINT;
  }
  if (S_ISDIR(info.st_mode)) {
    attributes |= FILE_ATTRIBUTE_DIRECTORY;
  } else if (IsSeparator(path.back())) {
    SetLastError(ERROR_INVALID_NAME);
    return INVALID_FILE_ATTRIBUTES;
  }
  if (!(info.st_mode & S_IWUSR)) attributes |= FILE_ATTRIBUTE_READONLY;
  return attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
}

bool TPosixFileSystem::MakeDirectory(std::string_view path, mode_t mode) {
  THostPath place;
  struct stat info {};
  if (!Locate(path, TKind::Folder, place)) return false;
  if (StatAt(place, info) == 0) return Fail(ERROR_ALREADY_EXISTS);
  if (errno != ENOENT) return FailErrno(errno);
  TFolderChange change(FFolders, place);
  if (Retry<mkdirat>(place.Base, place.Path.c_str(), mode) != 0) {
    return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  }
  change.Commit(place.Leaf());
  return true;
}

bool TPosixFileSystem::CreateDirectoryA(std::string_view path) {
  return MakeDirectory(path, 0777);
}

bool TPosixFileSystem::CreatePrivateDirectory(std::string_view path) {
  return MakeDirectory(path, 0700);
}

bool TPosixFileSystem::RemoveDirectoryA(std::string_view path) {
  THostPath place;
  struct stat info {};
  if (!Locate(path, TKind::Folder, place)) return false;
  if (StatAt(place, info) < 0) return FailErrno(errno);
  const bool isLink = S_ISLNK(info.st_mode);
  if (isLink && Retry<fstatat>(place.Base, place.Path.c_str(), &info, 0) != 0) return Fail(ERROR_DIRECTORY);
  if (!S_ISDIR(info.st_mode)) return Fail(ERROR_DIRECTORY);
  TFolderChange change(FFolders, place);
  const int flags = isLink ? 0 : AT_REMOVEDIR;
  if (Retry<unlinkat>(place.Base, place.Path.c_str(), flags) != 0) {
    return errno == EEXIST ? Fail(ERROR_DIR_NOT_EMPTY) : FailErrno(errno);
  }
  FFolders.ForgetPaths();
  change.Commit({}, place.Leaf());
  return true;
}

bool TPosixFileSystem::DeleteFileA(std::string_view path) {
  THostPath place;
  struct stat info {};
  if (!Locate(path, TKind::File, place)) return false;
  if (StatAt(place, info) < 0) return FailErrno(errno);
  if (S_ISDIR(info.st_mode)) return Fail(ERROR_ACCESS_DENIED);
  if (S_ISLNK(info.st_mode)) {
    // Delete the link itself, not its target. Links to folders are deleted by RemoveDirectoryA.
    if (Retry<fstatat>(place.Base, place.Path.c_str(), &info, 0) == 0 && S_ISDIR(info.st_mode)) {
      return Fail(ERROR_ACCESS_DENIED);
    }
  } else if (S_ISREG(info.st_mode) && !(info.st_mode & S_IWUSR)) {
    return Fail(ERROR_ACCESS_DENIED);
  }
  TFolderChange change(FFolders, place);
  if (Retry<unlinkat>(place.Base, place.Path.c_str(), 0) != 0) return FailErrno(errno);
  change.Commit({}, place.Leaf());
  return true;
}

bool TPosixFileSystem::CopyPermissions(std::string_view source, std::string_view target) {
  THostPath from, to;
  struct stat info {};
  if (!Locate(source, TKind::Folder, from) || !Locate(target, TKind::Folder, to)) return false;
  if (AtPlace(from, [&info](const THostPath& at) {
        return Retry<fstatat>(at.Base, at.Path.c_str(), &info, 0);
      }) < 0) {
    return FailErrno(errno);
  }
  const mode_t mode = (info.st_mode & 0777) | S_IWUSR;
  return AtPlace(to,
                 [mode](const THostPath& at) {
                   return Retry<fchmodat>(at.Base, at.Path.c_str(), mode, 0);
                 }) == 0 ||
         FailErrno(errno);
}

std::string TPosixFileSystem::GetTempPathA() {
  const char* const folder = getenv("TMPDIR");
  std::string path = ToWindowsPath(folder && *folder ? folder : "/tmp");
  if (path.empty()) {
    SetLastError(ERROR_PATH_NOT_FOUND);
  } else if (path.back() != '\\') {
    path += '\\';
  }
  return path;
}

std::string TPosixFileSystem::GetLongPathNameA(std::string_view path) {
  THostPath place;
  struct stat info {};
  if (!Locate(path, TKind::Folder, place) || place.Base != AT_FDCWD) return std::string(path);
  const std::string given = place.Path;
  const bool isThere = StatAt(place, info) == 0;
  place.Widen();
  if (isThere && FoldsCase(place, info.st_dev)) FFolders.SpellAll(place);
  return place.Path == given ? std::string(path) : RespelledPath(path, place.Path);
}

// Returns whether the host's own look-up on the device ignores case, so that a path may be found although
// it is spelled differently on disk. Queries each device once.
bool TPosixFileSystem::FoldsCase(const THostPath& place, dev_t device) {
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

void TPosixFileSystem::HoldFolders(bool hold) {
  FFolders.HoldFolders(hold);
  if (!hold) FWritten.Discard();
}

TUniqueFd TPosixFileSystem::OpenFolder(std::string_view path) {
  THostPath place;
  if (!Locate(path, TKind::Folder, place)) return {};
  TUniqueFd folder(AtPlace(
      place, [](const THostPath& at) { return Retry<openat>(at.Base, at.Path.c_str(), kOpenFolder); }));
  if (!folder.IsOpen()) errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  return folder;
}

std::unique_ptr<TFileLock> TPosixFileSystem::LockFolder(std::string_view path) {
  TUniqueFd folder = OpenFolder(path);
  if (!folder.IsOpen()) return nullptr;
  if (!LockExclusively(folder.Get())) {
    FailErrno(errno);
    return nullptr;
  }
  return std::make_unique<TPosixLock>(std::move(folder));
}

bool TPosixFileSystem::FlushFolder(std::string_view path) {
  const TUniqueFd folder = OpenFolder(path);
  return folder.IsOpen() && (FlushFile(folder.Get()) || FailErrno(errno));
}

bool TPosixFileSystem::FlushWritten() {
  return FWritten.Flush() || FailErrno(errno);
}

}  // namespace win
