#include "win/windows/WindowsFile.h"

#include <algorithm>

#include "win/Errors.h"

namespace win {
namespace {

constexpr size_t kMostBytes = size_t{1} << 30;  // in one call of the system

class TWindowsFileHandle : public TFileHandle {
 public:
  // `atOpening` describes a file open for reading; for one open for writing, the system is asked on each
  // call.
  TWindowsFileHandle(THandle file, std::wstring path, std::optional<TFileStamp> atOpening,
                     TWrittenFiles& written)
      : FFile(std::move(file)), FPath(std::move(path)), FAtOpening(atOpening), FWritten(written) {
    if (!FAtOpening) FWritten.NoteOpen(FFile.Get(), FPath);
  }
  ~TWindowsFileHandle() override { FWritten.Closed(FFile.Get(), FPath); }

  int64_t Read(void* buffer, size_t count) override {
    DWORD got = 0;
    if (ReadFile(FFile.Get(), buffer, static_cast<DWORD>(std::min(count, kMostBytes)), &got, nullptr))
      return got;
    FailLast();
    return -1;
  }

  bool Write(const void* buffer, size_t count) override {
    FWritten.NoteOpen(FFile.Get(), FPath);
    const auto* bytes = static_cast<const char*>(buffer);
    while (count > 0) {
      DWORD done = 0;
      if (!WriteFile(FFile.Get(), bytes, static_cast<DWORD>(std::min(count, kMostBytes)), &done, nullptr))
        return FailLast();
      bytes += done;
      count -= done;
    }
    return true;
  }

  bool Seek(int64_t position) override {
    LARGE_INTEGER to;
    to.QuadPart = position;
    return SetFilePointerEx(FFile.Get(), to, nullptr, FILE_BEGIN) || FailLast();
  }

  int64_t Size() override {
    const std::optional<TFileStamp> stamp = Stamp();
    return stamp ? stamp->Size : -1;
  }

  std::optional<TFileStamp> Stamp() override {
    if (FAtOpening) return FAtOpening;
    TFileFacts facts;
    if (!ReadFacts(FFile.Get(), facts)) return std::nullopt;
    return facts.Stamp;
  }

  bool Flush() override { return FlushFile(FFile.Get()) && FlushFolderNames(std::wstring(FolderOf(FPath))); }

 private:
  THandle FFile;
  std::wstring FPath;
  std::optional<TFileStamp> FAtOpening;
  TWrittenFiles& FWritten;
};

// Opens a file for writing and empties it, or creates it. Never by CREATE_ALWAYS, which refuses hidden
// files and drops the attributes and streams of others.
THandle OpenForWriting(std::wstring& full, TFileMode mode) {
  const bool isOwn = mode == TFileMode::CreateOwn;
  TEntryInfo info;
  if (Look(full, info)) {
    const bool isFollowed = info.IsLink && !isOwn && !info.IsFolder() && FollowLink(full) && Look(full, info);
    if ((info.IsLink && !isFollowed) || info.IsReadOnly()) {
      Fail(ERROR_ACCESS_DENIED);
      return {};
    }
  } else if (GetLastError() != ERROR_FILE_NOT_FOUND) {
    return {};
  }
  // Others may read what is being written, but a program's own file has one writer.
  const DWORD share = isOwn ? FILE_SHARE_READ : kShareAll;
  const DWORD flags = FILE_ATTRIBUTE_NORMAL | (isOwn ? FILE_FLAG_OPEN_REPARSE_POINT : 0);
  THandle file;
  const bool isOpen = Retry([&] {
    file = THandle(
        CreateFileW(full.c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr, OPEN_ALWAYS, flags, nullptr));
    return file.IsOpen();
  });
  if (!isOpen) return {};
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) {
    Fail(ERROR_ACCESS_DENIED);
    return {};
  }
  if (!SetEndOfFile(file.Get())) {
    FailLast();
    return {};
  }
  return file;
}

}  // namespace

THandle OpenForReading(const std::wstring& full, TFileFacts& facts) {
  THandle file;
  const bool isOpen = Retry([&] {
    file = THandle(CreateFileW(full.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                               FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    return file.IsOpen();
  });
  if (!isOpen) return {};
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) {
    Fail(ERROR_ACCESS_DENIED);
    return {};
  }
  if (!ReadFacts(file.Get(), facts)) return {};
  return file;
}

std::unique_ptr<TFileHandle> OpenFile(TWrittenFiles& written, std::string_view path, TFileMode mode) {
  std::wstring full;
  TFileFacts facts;
  if (!FullPath(path, TPathKind::File, full)) return nullptr;
  const bool isReading = mode == TFileMode::OpenRead;
  THandle file = isReading ? OpenForReading(full, facts) : OpenForWriting(full, mode);
  if (!file.IsOpen()) return nullptr;
  return std::make_unique<TWindowsFileHandle>(std::move(file), std::move(full),
                                              isReading ? std::optional(facts.Stamp) : std::nullopt, written);
}

std::optional<TFileStamp> StampOfFile(std::string_view path) {
  std::wstring full;
  TFileFacts facts;
  if (!FullPath(path, TPathKind::File, full)) return std::nullopt;
  const THandle file(CreateFileW(full.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.IsOpen()) {
    FailLast();
    return std::nullopt;
  }
  if (!ReadFacts(file.Get(), facts)) return std::nullopt;
  if (GetFileType(file.Get()) != FILE_TYPE_DISK || (facts.Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    Fail(ERROR_ACCESS_DENIED);
    return std::nullopt;
  }
  return facts.Stamp;
}

}  // namespace win
