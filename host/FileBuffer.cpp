#include "host/FileBuffer.h"

#include <utility>

#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "win/FileApi.h"

namespace host {

// The stamp is taken first: a change between the two steps shows as a change on the disk.
void TFileBuffer::Load() {
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(FFileName);
  FOnDisk = rtl::ReadFile(FFileName);
  FLoaded = stamp;
}

const std::string& TFileBuffer::Bytes() {
  if (FMake) {
    FChanged = FMake();
    FMake = nullptr;
  }
  if (FChanged) return *FChanged;
  if (!FOnDisk) Load();
  return *FOnDisk;
}

void TFileBuffer::SetBytes(std::string bytes) {
  if (!FMake && FChanged == bytes) return;
  const bool wasModified = Modified();
  FMake = nullptr;
  FChanged.reset();
  if (FOnDisk == bytes) {
    if (wasModified) Changed();
    return;
  }
  if (!FOnDisk) FLoaded = win::GetFileStamp(FFileName);
  FChanged = std::move(bytes);
  Changed();
}

void TFileBuffer::SetBytesLater(std::function<std::string()> make) {
  if (!FOnDisk && !FLoaded) FLoaded = win::GetFileStamp(FFileName);
  FMake = std::move(make);
  Changed();
}

void TFileBuffer::Revert() {
  if (!Modified()) return;
  FMake = nullptr;
  FChanged.reset();
  Changed();
}

bool TFileBuffer::ChangedOnDisk() const {
  if (!FOnDisk && !FChanged && !FMake) return false;
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(FFileName);
  return stamp && stamp != FLoaded;
}

bool TFileBuffer::Save(bool overwriteChanged) {
  if (!Modified()) return true;
  if (!overwriteChanged && ChangedOnDisk()) {
    win::SetLastError(win::ERROR_SHARING_VIOLATION);
    return false;
  }
  if (!win::ReplaceFileContents(FFileName, Bytes())) return false;
  FLoaded = win::GetFileStamp(FFileName);
  if (FChanged) FOnDisk = std::exchange(FChanged, std::nullopt);
  Changed();
  return true;
}

bool TFileBuffer::Reload() {
  if (!FOnDisk && !FChanged && !FMake) return true;
  const std::optional<std::string> before = FOnDisk;
  try {
    Load();
  } catch (const rtl::EStreamError&) {
    return false;
  }
  if (!Modified() && FOnDisk == before) return true;
  FMake = nullptr;
  FChanged.reset();
  Changed();
  return true;
}

}  // namespace host
