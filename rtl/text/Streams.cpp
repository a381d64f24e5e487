#include "rtl/text/Streams.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace rtl {

std::string TStream::ReadToEnd() {
  const int64_t length = Size() - Position();
  std::string bytes(static_cast<size_t>(std::max<int64_t>(length, 0)), '\0');
  size_t filled = 0;
  while (filled < bytes.size()) {
    const size_t count = Read(bytes.data() + filled, bytes.size() - filled);
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  return bytes;
}

TFileStream::TFileStream(std::string_view fileName, uint16_t mode) : FFileName(fileName) {
  const bool create = mode == fmCreate || mode == fmCreateOwn;
  FHandle = win::FileSystem().CreateFileA(fileName, mode == fmCreate      ? win::TFileMode::Create
                                                    : mode == fmCreateOwn ? win::TFileMode::CreateOwn
                                                                          : win::TFileMode::OpenRead);
  if (FHandle) return;
  const std::string reason = win::SysErrorMessage(win::GetLastError());
  if (create) throw EFCreateError(Format("Cannot create file \"%s\". %s", {fileName, reason}));
  throw EFOpenError(Format("Cannot open file \"%s\". %s", {fileName, reason}));
}

TFileStream::~TFileStream() = default;

size_t TFileStream::Read(void* buffer, size_t count) {
  const int64_t got = FHandle->Read(buffer, count);
  if (got < 0)
    throw EReadError(
        Format("Cannot read file \"%s\". %s", {FFileName, win::SysErrorMessage(win::GetLastError())}));
  FPosition += got;
  return static_cast<size_t>(got);
}

void TFileStream::Write(const void* buffer, size_t count) {
  if (!FHandle->Write(buffer, count))
    throw EWriteError(
        Format("Cannot write file \"%s\". %s", {FFileName, win::SysErrorMessage(win::GetLastError())}));
  FPosition += static_cast<int64_t>(count);
}

void TFileStream::SetPosition(int64_t position) {
  if (!FHandle->Seek(position))
    throw EStreamError(
        Format("Cannot seek in file \"%s\". %s", {FFileName, win::SysErrorMessage(win::GetLastError())}));
  FPosition = position;
}

int64_t TFileStream::Size() {
  const int64_t size = FHandle->Size();
  if (size < 0)
    throw EStreamError(
        Format("Cannot read file \"%s\". %s", {FFileName, win::SysErrorMessage(win::GetLastError())}));
  return size;
}

size_t TMemoryStream::Read(void* buffer, size_t count) {
  if (FPosition >= FBytes.size()) return 0;
  count = std::min(count, FBytes.size() - FPosition);
  std::memcpy(buffer, FBytes.data() + FPosition, count);
  FPosition += count;
  return count;
}

void TMemoryStream::Write(const void* buffer, size_t count) {
  if (count == 0) return;
  if (FPosition > FBytes.size()) FBytes.resize(FPosition);
  const size_t over = std::min(count, FBytes.size() - FPosition);
  const char* bytes = static_cast<const char*>(buffer);
  std::memcpy(FBytes.data() + FPosition, bytes, over);
  FBytes.append(bytes + over, count - over);
  FPosition += count;
}

void TMemoryStream::SetPosition(int64_t position) {
  FPosition = static_cast<size_t>(position);
}

std::string TMemoryStream::TakeBytes() {
  FPosition = 0;
  return std::exchange(FBytes, {});
}

}  // namespace rtl
