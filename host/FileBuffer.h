// The host's copy of one file: loaded on the first access, changed in memory, saved or reloaded.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "win/FileSystem.h"

namespace host {

class TFileBuffer {
 public:
  // `fileName` is a full Windows path. The file is not accessed yet.
  explicit TFileBuffer(std::string_view fileName) : FFileName(fileName) {}
  TFileBuffer(const TFileBuffer&) = delete;
  TFileBuffer& operator=(const TFileBuffer&) = delete;

  const std::string& FileName() const { return FFileName; }
  // Returns the bytes, byte order mark included, and loads the file if that was not done yet. Raises
  // rtl::EFOpenError or rtl::EReadError if it cannot be loaded.
  const std::string& Bytes();
  // Replaces the bytes in memory. The buffer becomes modified unless they are the same as before.
  void SetBytes(std::string bytes);
  bool Modified() const { return FModified; }

  // Returns whether the file exists and is not the one that was loaded or saved last: somebody has written or
  // replaced it since.
  bool ChangedOnDisk() const;

  // Writes a modified buffer to its file, which is replaced in one step (win::ReplaceFileContents). Returns
  // true if the file now holds the bytes of the buffer. Returns false otherwise, with the reason in
  // win::GetLastError; the buffer stays modified. A file that was changed on the disk is
  // ERROR_SHARING_VIOLATION and is not written, unless `overwriteChanged` is set.
  [[nodiscard]] bool Save(bool overwriteChanged = false);
  // Reads the file again and discards the changes in memory. Returns false if the file cannot be read; the
  // buffer is then as before. A buffer that was not loaded yet is not loaded.
  [[nodiscard]] bool Reload();

  // Called after each change of Bytes or Modified.
  std::function<void(TFileBuffer& buffer)> OnChange;

 private:
  void Load();
  void Changed() {
    if (OnChange) OnChange(*this);
  }

  std::string FFileName;
  std::optional<std::string> FBytes;       // nullopt until loaded
  std::optional<win::TFileStamp> FLoaded;  // of the file that was loaded or saved last
  bool FModified = false;
};

}  // namespace host
