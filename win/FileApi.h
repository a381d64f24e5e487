// The file functions under their Windows names, on the current file system. win/FileSystem.h documents
// them.
#pragma once

#include "win/Errors.h"
#include "win/FileSystem.h"

namespace win {

[[nodiscard]] inline bool CopyFileA(std::string_view source, std::string_view target, bool failIfExists) {
  return FileSystem().CopyFileA(source, target, failIfExists);
}
[[nodiscard]] inline bool ReplaceFileContents(std::string_view path, std::string_view bytes) {
  return FileSystem().ReplaceFileContents(path, bytes);
}
[[nodiscard]] inline bool CopyOverUnchanged(std::string_view source, std::string_view target,
                                            const TFileStamp& expected) {
  return FileSystem().CopyOverUnchanged(source, target, expected);
}
[[nodiscard]] inline bool CopyToOwnFile(std::string_view source, std::string_view target) {
  return FileSystem().CopyToOwnFile(source, target);
}
[[nodiscard]] inline bool MoveFileReplacing(std::string_view source, std::string_view target) {
  return FileSystem().MoveFileReplacing(source, target);
}
[[nodiscard]] inline std::optional<TFileStamp> GetFileStamp(std::string_view path) {
  return FileSystem().GetFileStamp(path);
}
[[nodiscard]] inline std::unique_ptr<TFileLock> LockFolder(std::string_view path) {
  return FileSystem().LockFolder(path);
}
[[nodiscard]] inline bool FlushFolder(std::string_view path) {
  return FileSystem().FlushFolder(path);
}
[[nodiscard]] inline std::unique_ptr<TFindHandle> FindFirstFileA(std::string_view pattern, TFindData& data) {
  return FileSystem().FindFirstFileA(pattern, data);
}
[[nodiscard]] inline bool FindNextFileA(TFindHandle& handle, TFindData& data) {
  return handle.Next(data);
}
[[nodiscard]] inline std::string GetTempPathA() {
  return FileSystem().GetTempPathA();
}

// Returns `path`, the first three characters of `prefix`, and `unique` in hexadecimal with the extension
// ".tmp": "C:\Temp\$DS1.tmp". `unique` is not 0, and only its low 16 bits count. No file is created.
[[nodiscard]] std::string GetTempFileNameA(std::string_view path, std::string_view prefix, uint32_t unique);

}  // namespace win
