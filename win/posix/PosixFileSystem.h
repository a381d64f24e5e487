// The file functions on the host's own files. win/FileSystem.h documents the contracts.
#pragma once

#include <string>
#include <sys/stat.h>
#include <unordered_set>

#include "win/FileSystem.h"
#include "win/posix/PosixCopy.h"
#include "win/posix/PosixPlaces.h"
#include "win/posix/PosixWritten.h"

namespace win {

// For one thread. Its open files and walks must not outlive it.
class TPosixFileSystem : public TFileSystem {
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

  // Returns how often a folder was read to look a name up, for measurements.
  size_t FolderReadings() const { return FPlaces.Folders().Readings(); }

 private:
  bool MakeDirectory(std::string_view path, mode_t mode);

  TPosixPlaces FPlaces;
  TWrittenFiles& FWritten = TWrittenFiles::OfProcess();
  TPosixCopier FCopier{FPlaces, FWritten};
  std::unordered_set<std::string> FPassedOver;  // messages that were reported already
};

}  // namespace win
