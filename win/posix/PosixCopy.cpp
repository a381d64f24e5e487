// CopyFileA: a copy beside the target, which then takes the target's name in one step.
#include <stdio.h>
#include <stdlib.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <algorithm>
#include <atomic>
#include <cerrno>

#include "win/Errors.h"
#include "win/posix/PosixErrors.h"
#include "win/posix/PosixFileSystem.h"

namespace win {
namespace {

constexpr size_t kBufferSize = 256 * 1024;
constexpr int kMostLinks = 40;

// A new file beside a target, which goes again unless it has taken the target's name.
class TTemporaryFile {
 public:
  explicit TTemporaryFile(const TPlace& target) : FTarget(target) {}
  ~TTemporaryFile() {
    if (!FPath.empty()) unlinkat(FTarget.Base, FPath.c_str(), 0);
  }

  // False, with errno. The name is short whatever the target's is, and has an extension that no walk takes.
  bool Create() {
    static const auto process = static_cast<unsigned long>(getpid());
    static std::atomic<unsigned> counter = 0;
    for (;;) {
      char name[40];
      snprintf(name, sizeof name, "~kva%lx-%x.$$$", process, counter.fetch_add(1));
      std::string path(FTarget.Folder());
      path += name;
      FFd = TUniqueFd(openat(FTarget.Base, path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
      if (FFd.IsOpen()) {
        FPath = std::move(path);
        return true;
      }
      if (errno != EEXIST) return false;
    }
  }

  int Fd() const { return FFd.Get(); }
  // Some file systems only tell here that there was no room.
  bool Close() { return FFd.Close(); }

  bool TakeName(bool onlyIfFree) {
    const char* const name = FTarget.Path.c_str();
    if (onlyIfFree) {
      // A second name, which cannot hide another file; the first one goes with this object.
      if (linkat(FTarget.Base, FPath.c_str(), FTarget.Base, name, 0) == 0) return true;
      if (errno != EPERM && errno != ENOTSUP) return false;
    }
    if (renameat(FTarget.Base, FPath.c_str(), FTarget.Base, name) != 0) return false;
    FPath.clear();
    return true;
  }

 private:
  const TPlace& FTarget;
  TUniqueFd FFd;
  std::string FPath;
};

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

// What a file has of its own beside its contents stays with its name: owner and group, access lists, labels.
// What this user may not set is left as it comes.
void KeepIdentity(const TPlace& target, const struct stat& existing, int fd, const struct stat& own) {
  if (existing.st_uid != own.st_uid || existing.st_gid != own.st_gid) {
    if (fchown(fd, existing.st_uid, existing.st_gid) != 0) {
      [[maybe_unused]] const int group = fchown(fd, static_cast<uid_t>(-1), existing.st_gid);
    }
  }
#ifdef __linux__
  const std::string& path = target.FullPath.empty() ? target.Path : target.FullPath;
  if (target.FullPath.empty() && target.Base != AT_FDCWD) return;
  char names[4096];
  const ssize_t length = listxattr(path.c_str(), names, sizeof names);
  std::vector<char> value;
  for (ssize_t i = 0; i < length; i += static_cast<ssize_t>(std::string_view(names + i).size()) + 1) {
    const ssize_t size = getxattr(path.c_str(), names + i, nullptr, 0);
    if (size < 0) continue;
    value.resize(static_cast<size_t>(size) + 1);
    const ssize_t got = getxattr(path.c_str(), names + i, value.data(), value.size());
    if (got >= 0) {
      [[maybe_unused]] const int set = fsetxattr(fd, names + i, value.data(), static_cast<size_t>(got), 0);
    }
  }
#else
  static_cast<void>(target);
#endif
}

// Media that keep no permissions, as FAT, refuse them; what is copied there is whole all the same.
bool IsRefusedByMedium(int error) {
  return error == EPERM || error == ENOTSUP || error == EINVAL || error == ENOSYS;
}

bool SetPermissionsAndTime(int fd, const struct stat& source) {
#ifdef __APPLE__
  const timespec modified = source.st_mtimespec;
#else
  const timespec modified = source.st_mtim;
#endif
  const timespec times[2] = {{0, UTIME_OMIT}, modified};
  return (fchmod(fd, source.st_mode & 0777) == 0 || IsRefusedByMedium(errno)) &&
         (futimens(fd, times) == 0 || IsRefusedByMedium(errno));
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

// The place that a copy to `path` replaces or makes, and what is there. False, with the last error set, where
// it may not be replaced.
bool TPosixFileSystem::FindTarget(std::string_view path, TPlace& place, struct stat& info, bool& exists,
                                  bool failIfExists) {
  if (!Locate(path, TKind::File, place)) return false;
  exists = StatAt(place, info, TAbsence::Believed) == 0;
  if (!exists && errno != ENOENT) return FailErrno(errno);
  if (exists && S_ISLNK(info.st_mode) && !FollowLinks(place, info, exists)) return FailErrno(errno);
  if (exists && failIfExists) return Fail(ERROR_FILE_EXISTS);
  if (exists && (!S_ISREG(info.st_mode) || !(info.st_mode & S_IWUSR))) return Fail(ERROR_ACCESS_DENIED);
  // Taking the name would otherwise change its case.
  if (exists && FoldsCase(place, info.st_dev)) {
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

bool TPosixFileSystem::CopyFileA(std::string_view source, std::string_view target, bool failIfExists) {
  struct stat info {
  }, existing{}, own{};
  const TUniqueFd from = OpenForReading(source, info);
  if (!from.IsOpen()) return false;
  TPlace place;
  bool exists = false;
  if (!FindTarget(target, place, existing, exists, failIfExists)) return false;
  if (exists && existing.st_dev == info.st_dev && existing.st_ino == info.st_ino) {
    return Fail(ERROR_SHARING_VIOLATION);
  }
  TFolderChange change(FFolders, place);
  TTemporaryFile copy(place);
  if (!copy.Create()) return errno == ENOENT ? Fail(ERROR_PATH_NOT_FOUND) : FailErrno(errno);
  if (fstat(copy.Fd(), &own) != 0 || !CopyContents(from.Get(), copy.Fd(), info.st_size))
    return FailErrno(errno);
  if (exists) KeepIdentity(place, existing, copy.Fd(), own);
  if (!SetPermissionsAndTime(copy.Fd(), info)) return FailErrno(errno);
  FWritten.Note(copy.Fd(), own.st_dev, place);
  if (!copy.Close()) return FailErrno(errno);
  if (!copy.TakeName(failIfExists)) {
    return failIfExists && errno == EEXIST ? Fail(ERROR_FILE_EXISTS) : FailErrno(errno);
  }
  change.Commit(place.Leaf());
  return true;
}

}  // namespace win
