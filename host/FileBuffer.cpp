#include "host/FileBuffer.h"

#include <utility>

#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace host {

namespace {

std::string ReadFile(std::string_view fileName) {
  return rtl::TFileStream(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone).ReadToEnd();
}

// Writes `bytes` to `fileName`, a file that need not be there yet.
[[nodiscard]] bool WriteFile(std::string_view fileName, std::string_view bytes) {
  const auto file = win::FileSystem().CreateFileA(fileName, win::TFileMode::Create);
  return file && file->Write(bytes.data(), bytes.size());
}

// Puts a new file in the place of `fileName` by way of a file next to it, so that no failure leaves half of
// it.
[[nodiscard]] bool ReplaceFile(const std::string& fileName, std::string_view bytes) {
  const uint32_t attributes = win::FileSystem().GetFileAttributesA(fileName);
  if (attributes == win::INVALID_FILE_ATTRIBUTES) return WriteFile(fileName, bytes);
  if (attributes & (win::FILE_ATTRIBUTE_READONLY | win::FILE_ATTRIBUTE_DIRECTORY)) {
    win::SetLastError(win::ERROR_ACCESS_DENIED);
    return false;
  }
  const std::string next = fileName + ".$$$";
  const bool isReplaced = WriteFile(next, bytes) && win::FileSystem().CopyPermissions(fileName, next) &&
                          win::CopyFileA(next, fileName, /*failIfExists=*/false);
  const uint32_t reason = win::GetLastError();
  rtl::DeleteFile(next);
  if (!isReplaced) win::SetLastError(reason);
  return isReplaced;
}

}  // namespace

const std::string& TFileBuffer::Bytes() {
  if (!FBytes) FBytes = ReadFile(FFileName);
  return *FBytes;
}

void TFileBuffer::SetBytes(std::string bytes) {
  if (FBytes && *FBytes == bytes) return;
  FBytes = std::move(bytes);
  FModified = true;
  Changed();
}

bool TFileBuffer::Save() {
  if (!FModified) return true;
  if (!ReplaceFile(FFileName, *FBytes)) return false;
  FModified = false;
  Changed();
  return true;
}

bool TFileBuffer::Reload() {
  if (!FBytes) return true;
  try {
    std::string bytes = ReadFile(FFileName);
    if (!FModified && bytes == *FBytes) return true;
    FBytes = std::move(bytes);
  } catch (const rtl::EStreamError&) {
    return false;
  }
  FModified = false;
  Changed();
  return true;
}

}  // namespace host
