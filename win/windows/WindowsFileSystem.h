// The file functions on the system's own files. win/FileSystem.h documents the contracts.
#pragma once

#include <string>
#include <unordered_set>

#include "win/FileSystem.h"
#include "win/windows/WindowsAccess.h"
#include "win/windows/WindowsCopy.h"
#include "win/windows/WindowsPath.h"
#include "win/windows/WindowsWritten.h"

namespace win {

// For one thread. Its open files and walks must not outlive it.
class TWindowsFileSystem : public TFileSystem {
 public:
  std::unique_ptr<TFileHandle> CreateFileA(std::string_view path, TFileMode mode) override;
  bool CopyFileA(std::string_view source, std::string_view target, bool failIfExists) override;
  bool CopyOverUnchanged(std::string_view source, std::string_view target,
                         const TFileStamp& expected) override;
  bool ReplaceFileContents(std::string_view path, std::string_view bytes) override;
  bool CopyToOwnFile(std::string_view source, std::string_view target) override;
  bool MoveFileReplacing(std::string_view source, std::string_view target) override;
  std::unique_ptr<TFindHandle> FindFirstFileA(std::string_view pattern, TFindData& data) override;
  uint32_t GetFileAttributesA(std::string_view path) override;
  std::optional<TFileStamp> GetFileStamp(std::string_view path) override;
  std::unique_ptr<TFileLock> LockFolder(std::string_view path) override;
  bool CreateDirectoryA(std::string_view path) override;
  bool CreatePrivateDirectory(std::string_view path) override;
  bool RemoveDirectoryA(std::string_view path) override;
  bool DeleteFileA(std::string_view path) override;
  bool CopyPermissions(std::string_view source, std::string_view target) override;
  std::string GetTempPathA() override;
  std::string GetLongPathNameA(std::string_view path) override;
  void ForgetWritten() override;
  bool FlushWritten() override;
  bool FlushFolder(std::string_view path) override;

 private:
  bool MakeDirectory(std::string_view path, SECURITY_ATTRIBUTES* access);

  TWrittenFiles& FWritten = TWrittenFiles::OfProcess();
  TWindowsCopier FCopier{FWritten};
  std::unordered_set<std::string> FPassedOver;  // messages that were reported already
};

}  // namespace win
