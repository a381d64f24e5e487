#include "win/posix/PosixFile.h"

#include <cerrno>

#include "win/Errors.h"
#include "win/posix/PosixErrors.h"
#include "win/posix/PosixLock.h"

namespace win {
namespace {

// Without O_NONBLOCK, opening a pipe would wait for a writer. The flag has no effect on regular files, which
// are the only ones that are kept open.
constexpr int kOpenFlags = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

constexpr uint64_t kNever = UINT64_MAX;

// The number of attempts to open a name that other processes rename, create or delete concurrently.
constexpr int kMostAttempts = 100;

class TPosixFileHandle : public TFileHandle {
 public:
  // `atOpening` describes a file open for reading; for one open for writing, the system is queried on each
  // call.
  TPosixFileHandle(TUniqueFd fd, THostPath place, dev_t device, std::optional<TFileStamp> atOpening,
                   bool isLocked, TWrittenFiles& written)
      : FFd(std::move(fd)),
        FPlace(std::move(place)),
        FDevice(device),
        FAtOpening(atOpening),
        FIsLocked(isLocked),
        FWritten(written) {}
  ~TPosixFileHandle() override {
    // Before closing, because FWritten may hold a duplicate.
    if (FIsLocked) Unlock(FFd.Get());
    if (!FFd.Close() && FNotedIn != kNever) FWritten.NoteFailure(errno);
  }

  int64_t Read(void* buffer, size_t count) override {
    const ssize_t got = ReadSome(FFd.Get(), buffer, count);
    if (got < 0) FailErrno(errno);
    return got;
  }

  bool Write(const void* buffer, size_t count) override {
    if (FNotedIn != FWritten.Epoch()) {
      FWritten.Note(FFd.Get(), FDevice, FPlace);
      FNotedIn = FWritten.Epoch();
    }
    return WriteAll(FFd.Get(), buffer, count) || FailErrno(errno);
  }

  bool Seek(int64_t position) override {
    return lseek(FFd.Get(), static_cast<off_t>(position), SEEK_SET) >= 0 || FailErrno(errno);
  }

  int64_t Size() override {
    const std::optional<TFileStamp> stamp = Stamp();
    return stamp ? stamp->Size : -1;
  }

  std::optional<TFileStamp> Stamp() override {
    if (FAtOpening) return FAtOpening;
    struct stat info {};
    if (Retry<fstat>(FFd.Get(), &info) == 0) return FileStampOf(info);
    FailErrno(errno);
    return std::nullopt;
  }

  bool Flush() override {
    const TUniqueFd folder(Retry<openat>(FPlace.Base, FPlace.FolderPath().c_str(), kOpenFolder));
    return (FlushFile(FFd.Get()) && folder.IsOpen() && FlushFile(folder.Get())) || FailErrno(errno);
  }

 private:
  TUniqueFd FFd;
  THostPath FPlace;
  dev_t FDevice;
  std::optional<TFileStamp> FAtOpening;
  bool FIsLocked;
  TWrittenFiles& FWritten;
  uint64_t FNotedIn = kNever;
};

// Opens a file for writing, and creates it if it does not exist. Never truncates it, because the file may
// be of the wrong kind, or read-only although root can write to it.
TUniqueFd OpenForWriting(TPosixPlaces& places, std::string_view path, THostPath& place, struct stat& info) {
  if (!places.Locate(path, TPathKind::File, place)) return {};
  const auto open = [](const THostPath& at, int create) {
    return Retry<openat>(at.Base, at.Path.c_str(), O_RDWR | create | kOpenFlags, 0666);
  };
  TUniqueFd fd(places.AtPlace(
      place, [&open](const THostPath& at) { return open(at, 0); }, TAbsence::Assumed));
  if (!fd.IsOpen() && errno == ENOENT) {
    TFolderChange change(places.Folders(), place);
    fd = TUniqueFd(open(place, O_CREAT));  // also through a link that leads to no file yet
    if (fd.IsOpen()) change.Commit(place.Leaf());
  }
  if (!fd.IsOpen() || Retry<fstat>(fd.Get(), &info) != 0) {
    FailErrno(errno);
    return {};
  }
  if (!S_ISREG(info.st_mode) || !(info.st_mode & S_IWUSR)) {
    Fail(ERROR_ACCESS_DENIED);
    return {};
  }
  return fd;
}

// As OpenForWriting, but does not follow a link, and locks the file.
TUniqueFd OpenOwn(TPosixPlaces& places, std::string_view path, THostPath& place, struct stat& info) {
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    place = {};
    if (!places.Locate(path, TPathKind::File, place)) return {};
    const auto open = [](const THostPath& at, int create) {
      return Retry<openat>(at.Base, at.Path.c_str(), O_RDWR | O_NOFOLLOW | create | kOpenFlags, 0666);
    };
    TUniqueFd fd(places.AtPlace(place, [&open](const THostPath& at) { return open(at, 0); }));
    if (!fd.IsOpen() && errno == ENOENT) {
      TFolderChange change(places.Folders(), place);
      fd = TUniqueFd(open(place, O_CREAT | O_EXCL));
      if (fd.IsOpen()) change.Commit(place.Leaf());
      if (!fd.IsOpen() && errno == EEXIST) continue;
    }
    if (!fd.IsOpen() || Retry<fstat>(fd.Get(), &info) != 0) {
      errno == ELOOP ? Fail(ERROR_ACCESS_DENIED) : FailErrno(errno);
      return {};
    }
    if (!S_ISREG(info.st_mode) || !(info.st_mode & S_IWUSR)) {
      Fail(ERROR_ACCESS_DENIED);
      return {};
    }
    if (!LockExclusively(fd.Get())) {
      FailErrno(errno);
      return {};
    }
    // The previous holder of the lock may have deleted or replaced the file.
    struct stat named {};
    if (Retry<fstatat>(place.Base, place.Path.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
        IsSameFile(named, info) && Retry<fstat>(fd.Get(), &info) == 0) {
      return fd;
    }
  }
  Fail(ERROR_SHARING_VIOLATION);
  return {};
}

}  // namespace

TFileStamp FileStampOf(const struct stat& info) {
#ifdef __APPLE__
  const timespec& modified = info.st_mtimespec;
#else
  const timespec& modified = info.st_mtim;
#endif
  return {static_cast<uint64_t>(info.st_dev), static_cast<uint64_t>(info.st_ino), info.st_size,
          static_cast<int64_t>(modified.tv_sec) * 1000000000 + modified.tv_nsec};
}

TUniqueFd OpenForReading(TPosixPlaces& places, std::string_view path, struct stat& info) {
  THostPath place;
  if (!places.Locate(path, TPathKind::File, place)) return {};
  TUniqueFd fd(places.AtPlace(place, [](const THostPath& at) {
    return Retry<openat>(at.Base, at.Path.c_str(), O_RDONLY | kOpenFlags);
  }));
  if (!fd.IsOpen() || Retry<fstat>(fd.Get(), &info) != 0) {
    FailErrno(errno);
    return {};
  }
  if (!S_ISREG(info.st_mode)) {
    Fail(ERROR_ACCESS_DENIED);
    return {};
  }
  return fd;
}

std::unique_ptr<TFileHandle> OpenFile(TPosixPlaces& places, TWrittenFiles& written, std::string_view path,
                                      TFileMode mode) {
  struct stat info {};
  THostPath place;
  if (mode == TFileMode::OpenRead) {
    TUniqueFd fd = OpenForReading(places, path, info);
    if (!fd.IsOpen()) return nullptr;
    return std::make_unique<TPosixFileHandle>(std::move(fd), std::move(place), info.st_dev, FileStampOf(info),
                                              false, written);
  }
  const bool isOwn = mode == TFileMode::CreateOwn;
  TUniqueFd fd = isOwn ? OpenOwn(places, path, place, info) : OpenForWriting(places, path, place, info);
  if (!fd.IsOpen()) return nullptr;
  if (info.st_size > 0 && Retry<ftruncate>(fd.Get(), 0) != 0) {
    FailErrno(errno);
    return nullptr;
  }
  place.Listing = nullptr;
  return std::make_unique<TPosixFileHandle>(std::move(fd), std::move(place), info.st_dev, std::nullopt, isOwn,
                                            written);
}

std::optional<TFileStamp> StampOfFile(TPosixPlaces& places, std::string_view path) {
  THostPath place;
  struct stat info {};
  if (!places.Locate(path, TPathKind::File, place)) return std::nullopt;
  if (places.AtPlace(place, [&info](const THostPath& at) {
        return Retry<fstatat>(at.Base, at.Path.c_str(), &info, 0);
      }) < 0) {
    FailErrno(errno);
    return std::nullopt;
  }
  if (!S_ISREG(info.st_mode)) {
    Fail(ERROR_ACCESS_DENIED);
    return std::nullopt;
  }
  return FileStampOf(info);
}

}  // namespace win
