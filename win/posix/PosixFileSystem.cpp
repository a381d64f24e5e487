#include "win/posix/PosixFileSystem.h"

#include <cerrno>
#include <stdlib.h>

#include "win/Errors.h"
#include "win/paths/Drives.h"
#include "win/posix/PosixErrors.h"
#include "win/posix/PosixFile.h"
#include "win/posix/PosixFind.h"
#include "win/posix/PosixLock.h"

namespace win {
std::unique_ptr<TFileSystem> AnotherHostFileSystem() {
  return std::make_unique<TPosixFileSystem>();
}

std::unique_ptr<TFileHandle> TPosixFileSystem::CreateFileA(std::string_view path, TFileMode mode) {
  return OpenFile(FPlaces, FWritten, path, mode);
}

std::optional<TFileStamp> TPosixFileSystem::GetFileStamp(std::string_view path) {
  return StampOfFile(FPlaces, path);
}

std::unique_ptr<TFindHandle> TPosixFileSystem::FindFirstFileA(std::string_view pattern, TFindData& data) {
  return FindFirst(FPlaces, FPassedOver, pattern, data);
}

bool TPosixFileSystem::CopyFileA(std::string_view source, std::string_view target, bool failIfExists) {
  return FCopier.Copy(source, target, TOverwriting::Document, failIfExists);
}

bool TPosixFileSystem::CopyToOwnFile(std::string_view source, std::string_view target) {
  return FCopier.Copy(source, target, TOverwriting::Own, false);
}

bool TPosixFileSystem::CopyOverUnchanged(std::string_view source, std::string_view target,
                                         const TFileStamp& expected) {
  return FCopier.CopyOverUnchanged(source, target, expected);
}

bool TPosixFileSystem::ReplaceFileContents(std::string_view path, std::string_view bytes) {
  return FCopier.ReplaceContents(path, bytes);
}

bool TPosixFileSystem::MoveFileReplacing(std::string_view source, std::string_view target) {
  return FCopier.Move(source, target);
}

uint32_t TPosixFileSystem::GetFileAttributesA(std::string_view path) {
  THostPath place;
  struct stat info {};
  if (!FPlaces.Locate(path, TPathKind::Folder, place)) return INVALID_FILE_ATTRIBUTES;
  if (FPlaces.StatAt(place, info) < 0) {
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
  if (!FPlaces.Locate(path, TPathKind::Folder, place)) return false;
  if (FPlaces.StatAt(place, info) == 0) return Fail(ERROR_ALREADY_EXISTS);
  if (errno != ENOENT) return FailErrno(errno);
  TFolderChange change(FPlaces.Folders(), place);
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
  if (!FPlaces.Locate(path, TPathKind::Folder, place)) return false;
  if (FPlaces.StatAt(place, info) < 0) return FailErrno(errno);
  const bool isLink = S_ISLNK(info.st_mode);
  if (isLink && Retry<fstatat>(place.Base, place.Path.c_str(), &info, 0) != 0) return Fail(ERROR_DIRECTORY);
  if (!S_ISDIR(info.st_mode)) return Fail(ERROR_DIRECTORY);
  TFolderChange change(FPlaces.Folders(), place);
  const int flags = isLink ? 0 : AT_REMOVEDIR;
  if (Retry<unlinkat>(place.Base, place.Path.c_str(), flags) != 0) {
    return errno == EEXIST ? Fail(ERROR_DIR_NOT_EMPTY) : FailErrno(errno);
  }
  FPlaces.Folders().ForgetPaths();
  change.Commit({}, place.Leaf());
  return true;
}

bool TPosixFileSystem::DeleteFileA(std::string_view path) {
  THostPath place;
  struct stat info {};
  if (!FPlaces.Locate(path, TPathKind::File, place)) return false;
  if (FPlaces.StatAt(place, info) < 0) return FailErrno(errno);
  if (S_ISDIR(info.st_mode)) return Fail(ERROR_ACCESS_DENIED);
  if (S_ISLNK(info.st_mode)) {
    // Delete the link itself, not its target. Links to folders are deleted by RemoveDirectoryA.
    if (Retry<fstatat>(place.Base, place.Path.c_str(), &info, 0) == 0 && S_ISDIR(info.st_mode)) {
      return Fail(ERROR_ACCESS_DENIED);
    }
  } else if (S_ISREG(info.st_mode) && !(info.st_mode & S_IWUSR)) {
    return Fail(ERROR_ACCESS_DENIED);
  }
  TFolderChange change(FPlaces.Folders(), place);
  if (Retry<unlinkat>(place.Base, place.Path.c_str(), 0) != 0) return FailErrno(errno);
  change.Commit({}, place.Leaf());
  return true;
}

bool TPosixFileSystem::CopyPermissions(std::string_view source, std::string_view target) {
  THostPath from, to;
  struct stat info {};
  if (!FPlaces.Locate(source, TPathKind::Folder, from) || !FPlaces.Locate(target, TPathKind::Folder, to))
    return false;
  if (FPlaces.AtPlace(from, [&info](const THostPath& at) {
        return Retry<fstatat>(at.Base, at.Path.c_str(), &info, 0);
      }) < 0) {
    return FailErrno(errno);
  }
  const mode_t mode = (info.st_mode & 0777) | S_IWUSR;
  return FPlaces.AtPlace(to,
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
  if (!FPlaces.Locate(path, TPathKind::Folder, place) || place.Base != AT_FDCWD) return std::string(path);
  const std::string given = ToHostName(path);
  const bool isThere = FPlaces.StatAt(place, info) == 0;
  if (isThere) FPlaces.SpellAsOnDisk(place, info.st_dev);
  return place.Path == given ? std::string(path) : RespelledPath(path, place.Path);
}

void TPosixFileSystem::ForgetWritten() {
  FWritten.Discard();
}

std::unique_ptr<TFileLock> TPosixFileSystem::LockFolder(std::string_view path) {
  TUniqueFd folder = FPlaces.OpenFolder(path);
  if (!folder.IsOpen()) return nullptr;
  if (!LockExclusively(folder.Get())) {
    FailErrno(errno);
    return nullptr;
  }
  return std::make_unique<TPosixLock>(std::move(folder));
}

bool TPosixFileSystem::FlushFolder(std::string_view path) {
  const TUniqueFd folder = FPlaces.OpenFolder(path);
  return folder.IsOpen() && (FlushFile(folder.Get()) || FailErrno(errno));
}

bool TPosixFileSystem::FlushWritten() {
  return FWritten.Flush() || FailErrno(errno);
}

}  // namespace win
