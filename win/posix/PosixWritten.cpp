#include "win/posix/PosixWritten.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace win {
namespace {

constexpr size_t kFew = 16;

TUniqueFd Duplicate(int fd) {
  return TUniqueFd(Retry<fcntl>(fd, F_DUPFD_CLOEXEC, 0));
}

// Some kinds of files and folders cannot be flushed, and need not be.
bool Succeeded(int result) {
  return result == 0 || errno == EINVAL || errno == EROFS || errno == ENOTSUP;
}

bool FlushDevice(int fd) {
#ifdef __linux__
  return Succeeded(Retry<syncfs>(fd));
#else
  sync();
  return FlushFile(fd);
#endif
}

}  // namespace

bool FlushFile(int fd) {
#ifdef F_FULLFSYNC
  if (fcntl(fd, F_FULLFSYNC) == 0) return true;
#endif
  return Succeeded(Retry<fsync>(fd));
}

TWrittenFiles& TWrittenFiles::OfProcess() {
  static TWrittenFiles files;
  return files;
}

void TWrittenFiles::NoteFailure(int number) {
  const std::lock_guard lock(FMutex);
  FFailure = number;
}

void TWrittenFiles::Note(int fd, dev_t device, const THostPath& place) {
  const std::lock_guard lock(FMutex);
  TUniqueFd& onDevice = FDevices[device];
  if (!onDevice.IsOpen()) {
    onDevice = Duplicate(fd);
    FEverything = FEverything || !onDevice.IsOpen();
  }
  if (FMany) return;
  if (FFiles.size() < kFew) {
    TNoted noted{Duplicate(fd),
                 TUniqueFd(Retry<openat>(place.Base, place.FolderPath().c_str(), kOpenFolder))};
    if (noted.File.IsOpen() && noted.Folder.IsOpen()) {
      FFiles.push_back(std::move(noted));
      return;
    }
  }
  FMany = true;
  FFiles.clear();
}

bool TWrittenFiles::NoteName(dev_t device, const THostPath& place) {
  {
    const std::lock_guard lock(FMutex);
    const auto found = FDevices.find(device);
    if (FMany && found != FDevices.end() && found->second.IsOpen()) return true;
  }
  const TUniqueFd folder(Retry<openat>(place.Base, place.FolderPath().c_str(), kOpenFolder));
  if (!folder.IsOpen()) return false;
  Note(folder.Get(), device, place);
  return true;
}

bool TWrittenFiles::Flush() {
  const std::lock_guard lock(FMutex);
  int failure = FFailure;
  const auto keep = [&failure](bool succeeded) {
    if (!succeeded && failure == 0) failure = errno;
  };
  if (FEverything) sync();
  if (FMany) {
    for (const auto& [device, fd] : FDevices) {
      if (fd.IsOpen()) keep(FlushDevice(fd.Get()));
    }
  } else {
    for (const TNoted& noted : FFiles) {
      keep(FlushFile(noted.File.Get()));
      keep(FlushFile(noted.Folder.Get()));
    }
  }
  ForgetAll();
  errno = failure;
  return failure == 0;
}

void TWrittenFiles::Discard() {
  const std::lock_guard lock(FMutex);
  ForgetAll();
}

void TWrittenFiles::ForgetAll() {
  FFiles.clear();
  FDevices.clear();
  FMany = false;
  FEverything = false;
  FFailure = 0;
  ++FEpoch;
}

}  // namespace win
