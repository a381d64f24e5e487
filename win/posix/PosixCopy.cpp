// Copying and renaming: whatever replaces a file takes its name in one step.
#include <cerrno>

#include "win/Errors.h"
#include "win/posix/PosixAccess.h"
#include "win/posix/PosixErrors.h"
#include "win/posix/PosixFileSystem.h"
#include "win/posix/PosixTemporary.h"

namespace win {
namespace {

constexpr size_t kBufferSize = 256 * 1024;
constexpr int kMostLinks = 40;

bool WriteAll(int fd, const char* from, size_t count) {
  while (count > 0) {
    const ssize_t done = write(fd, from, count);
    if (done < 0 && errno == EINTR) continue;
    if (done < 0) return false;
    from += done;
    count -= static_cast<size_t>(done);
  }
  return true;
}

// Bytes that the system copied by itself, which on some file systems is no copying at all. The rest, if any,
// is left to read and write: both files stand behind what was copied.
int64_t CopyInSystem([[maybe_unused]] int from, [[maybe_unused]] int to, [[maybe_unused]] int64_t size) {
  int64_t total = 0;
#ifdef __linux__
  while (total < size) {
    const ssize_t done = copy_file_range(from, nullptr, to, nullptr, static_cast<size_t>(size - total), 0);
    if (done <= 0) break;
    total += done;
  }
#endif
  return total;
}

// Goes from a link to the place that it names, through further links. `exists` tells whether anything is
// there.
bool FollowLinks(TPlace& place, struct stat& info, bool& exists) {
  place.Widen();
  for (int i = 0; i < kMostLinks; ++i) {
    std::string text(256, '\0');
    ssize_t length = 0;
    while ((length = readlinkat(place.Base, place.Path.c_str(), text.data(), text.size())) ==
           static_cast<ssize_t>(text.size())) {
      text.resize(text.size() * 2);
    }
    if (length < 0) return false;
    text.resize(static_cast<size_t>(length));
    const bool full = !text.empty() && text[0] == '/';
    if (full) place.Base = AT_FDCWD;
    place.Path = full ? text : std::string(place.Folder()).append(text);
    place.Listing = nullptr;
    exists = fstatat(place.Base, place.Path.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
    if (!exists) return errno == ENOENT;
    if (!S_ISLNK(info.st_mode)) return true;
  }
  errno = ELOOP;
  return false;
}

}  // namespace

// Finds the place that a file is to take, and the file that is there. Returns false, with the last error set, if
// that file may not be replaced.
bool TPosixFileSystem::FindTarget(std::string_view path, TOverwriting rule, TTarget& target) {
  TPlace& place = target.Place;
  struct stat& info = target.Info;
  if (!Locate(path, TKind::File, place)) return false;
  target.Exists = StatAt(place, info, TAbsence::Believed) == 0;
  if (!target.Exists) return errno == ENOENT || FailErrno(errno);
  const bool isLink = S_ISLNK(info.st_mode);
  if (rule == TOverwriting::Document && isLink && !FollowLinks(place, info, target.Exists)) {
    return FailErrno(errno);
  }
  if (!target.Exists) return true;
  const bool isKindTaken = S_ISREG(info.st_mode) || (isLink && rule == TOverwriting::Name);
  const bool isReadOnly = S_ISREG(info.st_mode) && !(info.st_mode & S_IWUSR);
  target.IsRefused = !isKindTaken || (isReadOnly && rule != TOverwriting::Own);
  // Taking the name would otherwise change its case.
  if (FoldsCase(place, info.st_dev)) {
    place.Widen();
    FFolders.SpellAll(place);
  }
  return true;
}

bool TPosixFileSystem::CopyContents(int from, int to, int64_t size) {
  int64_t total = size > static_cast<int64_t>(kBufferSize) ? CopyInSystem(from, to, size) : 0;
  if (FBuffer.empty()) FBuffer.resize(kBufferSize);
  // Files that the system makes up as they are read give 0 as their size.
  while (total < size || size == 0) {
    const ssize_t got = read(from, FBuffer.data(), FBuffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 || !WriteAll(to, FBuffer.data(), static_cast<size_t>(got))) return false;
    if (got == 0) break;
    total += got;
  }
  return true;
}

bool TPosixFileSystem::Copy(std::string_view source, std::string_view target, TOverwriting rule,
                            bool failIfExists) {
  struct stat info {
  }, own{};
  const TUniqueFd from = OpenForReading(source, info);
  if (!from.IsOpen()) return false;
  TTarget to;
  if (!FindTarget(target, rule, to)) return false;
  if (to.Exists && failIfExists) return Fail(ERROR_FILE_EXISTS);
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  if (to.Exists && to.Info.st_dev == info.st_dev && to.Info.st_ino == info.st_ino) {
    return Fail(ERROR_SHARING_VIOLATION);
  }
  TFolderChange change(FFolders, to.Place);
  TTemporaryFile copy(to.Place);
  if (!copy.Create()) return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  if (fstat(copy.Fd(), &own) != 0 || !CopyContents(from.Get(), copy.Fd(), info.st_size))
    return FailErrno(errno);
  if (rule == TOverwriting::Own) {
    if (!CopyAccess(from.Get(), info, copy.Fd(), own)) return FailErrno(errno);
  } else {
    if (to.Exists) KeepIdentity(to.Place, to.Info, copy.Fd(), own);
    if (!SetPermissions(copy.Fd(), info)) return FailErrno(errno);
  }
  if (!SetWriteTime(copy.Fd(), info)) return FailErrno(errno);
  FWritten.Note(copy.Fd(), own.st_dev, to.Place);
  if (!copy.Close()) return FailErrno(errno);
  if (!copy.TakeName(failIfExists)) {
    return failIfExists && errno == EEXIST ? Fail(ERROR_FILE_EXISTS) : FailErrno(errno);
  }
  change.Commit(to.Place.Leaf());
  return true;
}

bool TPosixFileSystem::CopyFileA(std::string_view source, std::string_view target, bool failIfExists) {
  return Copy(source, target, TOverwriting::Document, failIfExists);
}

bool TPosixFileSystem::CopyToOwnFile(std::string_view source, std::string_view target) {
  return Copy(source, target, TOverwriting::Own, false);
}

bool TPosixFileSystem::MoveFileReplacing(std::string_view source, std::string_view target) {
  TPlace from;
  TTarget to;
  struct stat info {};
  if (!Locate(source, TKind::File, from)) return false;
  if (StatAt(from, info) < 0) return FailErrno(errno);
  if (!S_ISREG(info.st_mode)) return Fail(ERROR_ACCESS_DENIED);
  if (!FindTarget(target, TOverwriting::Name, to)) return false;
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  const TUniqueFd folder(openat(to.Place.Base, to.Place.FolderPath().c_str(), kOpenFolder));
  if (!folder.IsOpen()) return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  TFolderChange removal(FFolders, from);
  TFolderChange addition(FFolders, to.Place);
  FWritten.Note(folder.Get(), info.st_dev, to.Place);
  if (renameat(from.Base, from.Path.c_str(), to.Place.Base, to.Place.Path.c_str()) != 0)
    return FailErrno(errno);
  removal.Commit({}, from.Leaf());
  addition.Commit(to.Place.Leaf());
  return true;
}

}  // namespace win
