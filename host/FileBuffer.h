// The host's copy of one file: loaded when it is first looked at, changed in memory, saved or taken anew from
// disk.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace host {

class TFileBuffer {
 public:
  // `fileName` is a full Windows path. No file is touched yet.
  explicit TFileBuffer(std::string_view fileName) : FFileName(fileName) {}
  TFileBuffer(const TFileBuffer&) = delete;
  TFileBuffer& operator=(const TFileBuffer&) = delete;

  const std::string& FileName() const { return FFileName; }
  // The file's bytes as the user sees them, mark and all. Raises rtl::EFOpenError when they must be loaded
  // and cannot.
  const std::string& Bytes();
  // Bytes that are those of before change nothing, others make the buffer modified.
  void SetBytes(std::string bytes);
  bool Modified() const { return FModified; }

  // True when the file holds the buffer's bytes; a buffer that is not modified is not written. The file is
  // replaced in one step. False, with the reason in win::GetLastError, leaves file and buffer as they were.
  [[nodiscard]] bool Save();
  // Takes the file from disk and drops what was changed in memory. False when the file cannot be read: the
  // buffer stays as it is.
  [[nodiscard]] bool Reload();

  // Called after each change of Bytes or Modified.
  std::function<void(TFileBuffer& buffer)> OnChange;

 private:
  void Changed() {
    if (OnChange) OnChange(*this);
  }

  std::string FFileName;
  std::optional<std::string> FBytes;  // nothing until they are asked for
  bool FModified = false;
};

}  // namespace host
