#include "host/FileBuffer.h"

#include <utility>

#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "win/FileApi.h"

namespace host {

// The stamp is taken first: a change between the two steps shows as a change on the disk.
void TFileBuffer::Load() {
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(FFileName);
  FBytes = rtl::ReadFile(FFileName);
  FLoaded = stamp;
}

const std::string& TFileBuffer::Bytes() {
  if (!FBytes) Load();
  return *FBytes;
}

void TFileBuffer::SetBytes(std::string bytes) {
  if (FBytes && *FBytes == bytes) return;
  if (!FBytes) FLoaded = win::GetFileStamp(FFileName);
  FBytes = std::move(bytes);
  FModified = true;
  Changed();
}

bool TFileBuffer::ChangedOnDisk() const {
  if (!FBytes) return false;
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(FFileName);
  return stamp && stamp != FLoaded;
}

bool TFileBuffer::Save(bool overwriteChanged) {
  if (!FModified) return true;
  if (!overwriteChanged && ChangedOnDisk()) {
    win::SetLastError(win::ERROR_SHARING_VIOLATION);
    return false;
  }
  if (!win::ReplaceFileContents(FFileName, *FBytes)) return false;
  FLoaded = win::GetFileStamp(FFileName);
  FModified = false;
  Changed();
  return true;
}

bool TFileBuffer::Reload() {
  if (!FBytes) return true;
  const std::string before = *FBytes;
  try {
    Load();
  } catch (const rtl::EStreamError&) {
    return false;
  }
  if (!FModified && *FBytes == before) return true;
  FModified = false;
  Changed();
  return true;
}

}  // namespace host
