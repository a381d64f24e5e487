// The file functions on the host's own files.
#pragma once

#include "win/FileSystem.h"

namespace win {

class TPosixFileSystem : public TFileSystem {
 public:
  std::unique_ptr<TFileHandle> CreateFileA(std::string_view path, TFileMode mode) override;
  bool CopyFileA(std::string_view source, std::string_view target, bool failIfExists) override;
  std::unique_ptr<TFindHandle> FindFirstFileA(std::string_view pattern, TFindData& data) override;
  uint32_t GetFileAttributesA(std::string_view path) override;
  bool CreateDirectoryA(std::string_view path) override;
  bool CreatePrivateDirectory(std::string_view path) override;
  bool RemoveDirectoryA(std::string_view path) override;
  bool DeleteFileA(std::string_view path) override;
  bool CopyPermissions(std::string_view source, std::string_view target) override;
  std::string GetTempPathA() override;
  std::string GetLongPathNameA(std::string_view path) override;
  bool FlushWritten() override;
};

}  // namespace win
