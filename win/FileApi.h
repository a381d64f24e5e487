// The file functions under their Windows names, on the file system in force. The contracts stand in
// win/FileSystem.h.
#pragma once

#include "win/Errors.h"
#include "win/FileSystem.h"

namespace win {

[[nodiscard]] inline bool CopyFileA(std::string_view source, std::string_view target, bool failIfExists) {
  return FileSystem().CopyFileA(source, target, failIfExists);
}
[[nodiscard]] inline std::unique_ptr<TFindHandle> FindFirstFileA(std::string_view pattern, TFindData& data) {
  return FileSystem().FindFirstFileA(pattern, data);
}
[[nodiscard]] inline bool FindNextFileA(TFindHandle& handle, TFindData& data) {
  return handle.Next(data);
}
inline void FindClose(std::unique_ptr<TFindHandle> handle) {
  handle.reset();
}
[[nodiscard]] inline std::string GetTempPathA() {
  return FileSystem().GetTempPathA();
}

// Composes `path`, the first three characters of `prefix` and `unique` in hexadecimal with the extension
// ".tmp": "C:\Temp\$DS1.tmp". `unique` is not 0, and only its low 16 bits count: no file is created.
[[nodiscard]] std::string GetTempFileNameA(std::string_view path, std::string_view prefix, uint32_t unique);

// Opens a document in the user's viewer, without waiting for it. `file` is a Windows path. False where no
// viewer could be started.
bool ShellExecuteA(std::string_view operation, std::string_view file);

}  // namespace win
