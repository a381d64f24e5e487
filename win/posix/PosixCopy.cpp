#include "win/posix/PosixCopy.h"

#include <cerrno>

#include "win/Errors.h"
#include "win/posix/PosixAccess.h"
#include "win/posix/PosixErrors.h"
#include "win/posix/PosixFile.h"
#include "win/posix/PosixTemporary.h"

namespace win {
namespace {

constexpr size_t kBufferSize = size_t{256} * 1024;
constexpr int kMostLinks = 40;
constexpr mode_t kPrivate = 0600;  // until it gets the permission bits of another file
constexpr mode_t kUsual = 0666;

// Lets the system copy the data, which on some file systems shares it. Returns the number of bytes copied;
// both files are positioned after them.
int64_t CopyInSystem([[maybe_unused]] int from, [[maybe_unused]] int to, [[maybe_unused]] int64_t size) {
  int64_t total = 0;
#ifdef __linux__
  while (total < size) {
    const ssize_t done =
        Retry<copy_file_range>(from, nullptr, to, nullptr, static_cast<size_t>(size - total), 0U);
    if (done <= 0) break;
    total += done;
  }
#endif
  return total;
}

// Replaces `place`, a link, by the target of the link, following further links. Sets `exists` to whether
// the target exists.
bool FollowLinks(THostPath& place, struct stat& info, bool& exists) {
  for (int i = 0; i < kMostLinks; ++i) {
    std::string text(256, '\0');
    ssize_t length = 0;
    while ((length = Retry<readlinkat>(place.Base, place.Path.c_str(), text.data(), text.size())) ==
           static_cast<ssize_t>(text.size())) {
      text.resize(text.size() * 2);
    }
    if (length < 0) return false;
    text.resize(static_cast<size_t>(length));
    const bool full = !text.empty() && text[0] == '/';
    if (full) place.Base = AT_FDCWD;
    place.Path = full ? text : std::string(place.Folder()).append(text);
    place.Listing = nullptr;
    exists = Retry<fstatat>(place.Base, place.Path.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
    if (!exists) return errno == ENOENT;
    if (!S_ISLNK(info.st_mode)) return true;
  }
  errno = ELOOP;
  return false;
}

}  // namespace

// Finds the target of a copy, and the file that it replaces. Returns false, with the last error set, if
// that file must not be replaced.
bool TPosixCopier::FindTarget(std::string_view path, TOverwriting rule, TTarget& target) {
  THostPath& place = target.Place;
  struct stat& info = target.Info;
  if (!FPlaces.Locate(path, TPathKind::File, place)) return false;
  target.Exists = FPlaces.StatAt(place, info, TAbsence::Trusted) == 0;
  if (!target.Exists) return errno == ENOENT || FailErrno(errno);
  const bool isLink = S_ISLNK(info.st_mode);
  if (rule == TOverwriting::Document && isLink && !FollowLinks(place, info, target.Exists)) {
    return FailErrno(errno);
  }
  if (!target.Exists) return true;
  const bool isKindTaken = S_ISREG(info.st_mode) || (isLink && rule == TOverwriting::Name);
  const bool isReadOnly = S_ISREG(info.st_mode) && !(info.st_mode & S_IWUSR);
  target.IsRefused = !isKindTaken || (isReadOnly && rule != TOverwriting::Own);
  // Keep the case of the existing name.
  FPlaces.SpellAsOnDisk(place, info.st_dev);
  return true;
}

bool TPosixCopier::CopyContents(int from, int to, int64_t size) {
  int64_t total = size > static_cast<int64_t>(kBufferSize) ? CopyInSystem(from, to, size) : 0;
  if (FBuffer.empty()) FBuffer.resize(kBufferSize);
  // Files whose contents the system generates report a size of 0.
  while (total < size || size == 0) {
    const ssize_t got = ReadSome(from, FBuffer.data(), FBuffer.size());
    if (got < 0 || !WriteAll(to, FBuffer.data(), static_cast<size_t>(got))) return false;
    if (got == 0) break;
    total += got;
  }
  return true;
}

// Writes a file beside the target by calling `fill`, which returns false, with errno, on failure, and
// renames it to the target. On failure returns false, with the last error set, and the target is unchanged.
bool TPosixCopier::Replace(const TTarget& target, mode_t mode, bool onlyIfFree, const TFill& fill,
                           const TFileStamp* expected) {
  struct stat own {};
  TFolderChange change(FPlaces.Folders(), target.Place);
  TTemporaryFile file(target.Place);
  SweepOnce(target.Place);
  if (!file.Create(mode, own)) return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  FWritten.Note(file.Fd(), own.st_dev, target.Place);
  if (!fill(file.Fd(), own) || !file.Finish()) return FailErrno(errno);
  if (!(expected ? file.RenameToUnchanged(*expected) : file.RenameToTarget(onlyIfFree))) {
    return onlyIfFree && errno == EEXIST ? Fail(ERROR_FILE_EXISTS) : FailErrno(errno);
  }
  change.Commit(target.Place.Leaf());
  return true;
}

void TPosixCopier::SweepOnce(const THostPath& target) {
  if (target.Base == AT_FDCWD && FSwept.emplace(target.Folder()).second) SweepTemporaryFiles(target);
}

bool TPosixCopier::Copy(std::string_view source, std::string_view target, TOverwriting rule,
                        bool failIfExists, const TFileStamp* expected) {
  struct stat info {};
  const TUniqueFd from = OpenForReading(FPlaces, source, info);
  if (!from.IsOpen()) return false;
  TTarget to;
  if (!FindTarget(target, rule, to)) return false;
  if (to.Exists && failIfExists) return Fail(ERROR_FILE_EXISTS);
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  if (to.Exists && IsSameFile(to.Info, info)) return Fail(ERROR_SHARING_VIOLATION);
  const TFill fill = [&](int fd, const struct stat& own) {
    if (!CopyContents(from.Get(), fd, info.st_size)) return false;
    if (rule == TOverwriting::Own) return CopyAccess(from.Get(), info, fd, own) && SetWriteTime(fd, info);
    if (to.Exists) KeepIdentity(to.Place, to.Info, fd, own);
    return SetPermissions(fd, expected ? to.Info : info) && SetWriteTime(fd, info);
  };
  return Replace(to, kPrivate, failIfExists, fill, expected);
}

bool TPosixCopier::ReplaceContents(std::string_view path, std::string_view bytes) {
  TTarget to;
  if (!FindTarget(path, TOverwriting::Document, to)) return false;
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  return Replace(to, to.Exists ? kPrivate : kUsual, false, [&](int fd, const struct stat& own) {
    if (!WriteAll(fd, bytes.data(), bytes.size())) return false;
    if (!to.Exists) return true;
    KeepIdentity(to.Place, to.Info, fd, own);
    return SetPermissions(fd, to.Info);
  });
}

bool TPosixCopier::CopyOverUnchanged(std::string_view source, std::string_view target,
                                     const TFileStamp& expected) {
  THostPath from;
  TTarget to;
  struct stat info {};
  const bool isFound = FPlaces.Locate(source, TPathKind::File, from) && FPlaces.StatAt(from, info) == 0;
  if (!FindTarget(target, TOverwriting::Document, to)) return false;
  if (!to.Exists) return Fail(ERROR_FILE_NOT_FOUND);
  // Checked here too, so that a refused source stays where it is.
  if (FileStampOf(to.Info) != expected) return Fail(ERROR_FILE_INVALID);
  if (isFound && !to.IsRefused && CanTakePlaceOf(from, info, to)) {
    from.Listing = nullptr;  // the second look-up may have deleted it
    TFolderChange removal(FPlaces.Folders(), from);
    TFolderChange change(FPlaces.Folders(), to.Place);
    TTemporaryFile file(to.Place);
    SweepOnce(to.Place);
    if (FWritten.NoteName(info.st_dev, to.Place) && file.Adopt(from, FileStampOf(info), expected)) {
      removal.Commit({}, from.Leaf());
      if (!file.RenameToUnchanged(expected)) return FailErrno(errno);
      change.Commit(to.Place.Leaf());
      return true;
    }
  }
  return Copy(source, target, TOverwriting::Document, false, &expected);
}

// Returns whether the file `source`, which `info` describes, is after a move the same as a copy. Gives it the
// target's permission bits.
bool TPosixCopier::CanTakePlaceOf(const THostPath& source, const struct stat& info, const TTarget& target) {
  return S_ISREG(info.st_mode) && !IsSameFile(info, target.Info) && info.st_dev == target.Info.st_dev &&
         info.st_uid == target.Info.st_uid && info.st_gid == target.Info.st_gid && !HasLabels(source) &&
         !HasLabels(target.Place) && SetPermissions(source, info, target.Info);
}

bool TPosixCopier::Move(std::string_view source, std::string_view target) {
  THostPath from;
  TTarget to;
  struct stat info {};
  if (!FPlaces.Locate(source, TPathKind::File, from)) return false;
  if (FPlaces.StatAt(from, info) < 0) return FailErrno(errno);
  if (!S_ISREG(info.st_mode)) return Fail(ERROR_ACCESS_DENIED);
  if (!FindTarget(target, TOverwriting::Name, to)) return false;
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  if (!FWritten.NoteName(info.st_dev, to.Place))
    return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  from.Listing = nullptr;  // the second look-up may have deleted it
  TFolderChange removal(FPlaces.Folders(), from);
  TFolderChange addition(FPlaces.Folders(), to.Place);
  if (Retry<renameat>(from.Base, from.Path.c_str(), to.Place.Base, to.Place.Path.c_str()) != 0)
    return FailErrno(errno);
  removal.Commit({}, from.Leaf());
  addition.Commit(to.Place.Leaf());
  return true;
}

}  // namespace win
