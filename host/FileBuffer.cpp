#include "host/FileBuffer.h"

#include <utility>

#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "win/FileApi.h"

namespace host {

// The stamp is taken first: a change between the two steps shows as a change on the disk.
TFileBuffer::TContents TFileBuffer::ReadContents(const std::string& fileName) {
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(fileName);
  return {rtl::ReadFile(fileName), stamp};
}

void TFileBuffer::SetContents(TContents contents) {
  FOnDisk = std::move(contents.Bytes);
  FLoaded = contents.Stamp;
}

const std::string& TFileBuffer::Bytes() {
  if (FMake) {
    FChanged = FMake();
    FMake = nullptr;
  }
  if (FChanged) return *FChanged;
  if (!FOnDisk) SetContents(ReadContents(FFileName));
  return *FOnDisk;
}

void TFileBuffer::SetBytesLater(std::function<std::string()> make) {
  if (!FOnDisk && !FLoaded) FLoaded = win::GetFileStamp(FFileName);
  FMake = std::move(make);
  BytesChanged();
}

void TFileBuffer::Revert() {
  if (!Modified()) return;
  FMake = nullptr;
  FChanged.reset();
  BytesChanged();
}

bool TFileBuffer::ChangedOnDisk() const {
  if (!IsLoaded()) return false;
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
  if (!IsLoaded()) return true;
  try {
    Reload(ReadContents(FFileName));
  } catch (const rtl::EStreamError&) {
    return false;
  }
  return true;
}

void TFileBuffer::Reload(TContents contents) {
  const bool isSame = !Modified() && FOnDisk == contents.Bytes;
  SetContents(std::move(contents));
  if (isSame) return;
  FMake = nullptr;
  FChanged.reset();
  BytesChanged();
}

}  // namespace host
