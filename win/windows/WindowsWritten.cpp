#include "win/windows/WindowsWritten.h"

#include <utility>

#include "win/FileSystem.h"
#include "win/windows/WindowsAccess.h"

namespace win {
namespace {

constexpr uint32_t kInvalidFunction = 1;
constexpr uint32_t kNotSupported = 50;

// Flushes the file at a full path.
bool FlushPath(const std::wstring& full) {
  THandle file;
  const bool isOpen = Retry([&] {
    file = THandle(CreateFileW(full.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    return file.IsOpen();
  });
  if (!isOpen) return GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND;
  return FlushFile(file.Get());
}

}  // namespace

bool FlushFile(HANDLE file) {
  return FlushFileBuffers(file) || FailLast();
}

bool FlushFolderNames(const std::wstring& folder) {
  const THandle handle(CreateFileW(folder.c_str(), GENERIC_WRITE, kShareAll, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (handle.IsOpen() && FlushFileBuffers(handle.Get())) return true;
  const uint32_t code = ::GetLastError();
  return code == ERROR_ACCESS_DENIED || code == ERROR_INVALID_HANDLE || code == kInvalidFunction ||
         code == kNotSupported || code == ERROR_WRITE_PROTECT || Fail(code);
}

TWrittenFiles& TWrittenFiles::OfProcess() {
  static TWrittenFiles files;
  return files;
}

void TWrittenFiles::Note(const std::wstring& full) {
  const std::lock_guard lock(FMutex);
  FFiles.insert(full);
}

void TWrittenFiles::NoteOpen(HANDLE file, const std::wstring& full) {
  const std::lock_guard lock(FMutex);
  FOpen.insert(file);
  FFiles.erase(full);  // written before, under another handle
}

void TWrittenFiles::Closed(HANDLE file, const std::wstring& full) {
  const std::lock_guard lock(FMutex);
  if (FOpen.erase(file) > 0) FFiles.insert(full);
}

bool TWrittenFiles::Flush() {
  std::set<std::wstring> files;
  uint32_t failure = ERROR_SUCCESS;
  {
    const std::lock_guard lock(FMutex);
    for (const HANDLE file : FOpen) {
      if (!FlushFile(file)) failure = GetLastError();
    }
    FOpen.clear();
    files.swap(FFiles);
  }
  for (const std::wstring& file : files) {
    if (!FlushPath(file) && failure == ERROR_SUCCESS) failure = GetLastError();
  }
  return failure == ERROR_SUCCESS || Fail(failure);
}

void TWrittenFiles::Discard() {
  const std::lock_guard lock(FMutex);
  FFiles.clear();
  FOpen.clear();
}

}  // namespace win
