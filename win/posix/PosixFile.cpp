// Opening, reading and writing a file.
#include <cerrno>
#include <optional>

#include "win/Errors.h"
#include "win/posix/PosixErrors.h"
#include "win/posix/PosixFileSystem.h"

namespace win {
namespace {

// Without O_NONBLOCK, opening a pipe would wait for whoever writes to it. It stays set: what is kept open is
// a regular file, and those pay no heed to it.
constexpr int kOpenFlags = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

constexpr uint64_t kNever = UINT64_MAX;

class TPosixFileHandle : public TFileHandle {
 public:
  // `size` is that of a file open for reading; one that is written is asked for it.
  TPosixFileHandle(TUniqueFd fd, TPlace place, dev_t device, std::optional<int64_t> size,
                   TWrittenFiles& written)
      : FFd(std::move(fd)), FPlace(std::move(place)), FDevice(device), FSize(size), FWritten(written) {}
  ~TPosixFileHandle() override {
    if (!FFd.Close() && FNotedIn != kNever) FWritten.NoteFailure(errno);
  }

  int64_t Read(void* buffer, size_t count) override {
    for (;;) {
      const ssize_t got = read(FFd.Get(), buffer, count);
      if (got >= 0) return got;
      if (errno != EINTR) break;
    }
    FailErrno(errno);
    return -1;
  }

  bool Write(const void* buffer, size_t count) override {
    if (FNotedIn != FWritten.Epoch()) {
      FWritten.Note(FFd.Get(), FDevice, FPlace);
      FNotedIn = FWritten.Epoch();
    }
    const char* from = static_cast<const char*>(buffer);
    while (count > 0) {
      const ssize_t done = write(FFd.Get(), from, count);
      if (done < 0 && errno == EINTR) continue;
      if (done < 0) return FailErrno(errno);
      from += done;
      count -= static_cast<size_t>(done);
    }
    return true;
  }

  bool Seek(int64_t position) override {
    return lseek(FFd.Get(), static_cast<off_t>(position), SEEK_SET) >= 0 || FailErrno(errno);
  }

  int64_t Size() override {
    if (FSize) return *FSize;
    struct stat info {};
    if (fstat(FFd.Get(), &info) == 0) return info.st_size;
    FailErrno(errno);
    return -1;
  }

 private:
  TUniqueFd FFd;
  TPlace FPlace;
  dev_t FDevice;
  std::optional<int64_t> FSize;
  TWrittenFiles& FWritten;
  uint64_t FNotedIn = kNever;
};

}  // namespace

TUniqueFd TPosixFileSystem::OpenForReading(std::string_view path, struct stat& info) {
  TPlace place;
  if (!Locate(path, TKind::File, place)) return {};
  TUniqueFd fd(AtPlace(
      place, [](const TPlace& at) { return openat(at.Base, at.Path.c_str(), O_RDONLY | kOpenFlags); }));
  if (!fd.IsOpen() || fstat(fd.Get(), &info) != 0) {
    FailErrno(errno);
    return {};
  }
  if (!S_ISREG(info.st_mode)) {
    Fail(ERROR_ACCESS_DENIED);
    return {};
  }
  return fd;
}

std::unique_ptr<TFileHandle> TPosixFileSystem::CreateFileA(std::string_view path, TFileMode mode) {
  struct stat info {};
  TPlace place;
  if (mode == TFileMode::OpenRead) {
    TUniqueFd fd = OpenForReading(path, info);
    if (!fd.IsOpen()) return nullptr;
    return std::make_unique<TPosixFileHandle>(std::move(fd), std::move(place), info.st_dev, info.st_size,
                                              FWritten);
  }
  if (!Locate(path, TKind::File, place)) return nullptr;
  // Never O_TRUNC: what is opened may be of the wrong kind, or read-only where root may write all the same.
  const auto open = [](const TPlace& at, int create) {
    return openat(at.Base, at.Path.c_str(), O_RDWR | create | kOpenFlags, 0666);
  };
  TUniqueFd fd(AtPlace(
      place, [&open](const TPlace& at) { return open(at, 0); }, TAbsence::Believed));
  if (!fd.IsOpen() && errno == ENOENT) {
    TFolderChange change(FFolders, place);
    fd = TUniqueFd(open(place, O_CREAT));  // also through a link that leads to no file yet
    if (fd.IsOpen()) change.Commit(place.Leaf());
  }
  if (!fd.IsOpen() || fstat(fd.Get(), &info) != 0) {
    FailErrno(errno);
    return nullptr;
  }
  if (!S_ISREG(info.st_mode) || !(info.st_mode & S_IWUSR)) {
    Fail(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  if (info.st_size > 0 && ftruncate(fd.Get(), 0) != 0) {
    FailErrno(errno);
    return nullptr;
  }
  place.Listing = nullptr;
  return std::make_unique<TPosixFileHandle>(std::move(fd), std::move(place), info.st_dev, std::nullopt,
                                            FWritten);
}

}  // namespace win
