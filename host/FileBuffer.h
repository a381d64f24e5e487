// The host's copy of one file: loaded on the first access, changed in memory, saved or reloaded.
//
// An editor gives its text only when somebody needs the bytes, because converting a large text takes time,
// and because a text may have no bytes while it is being typed, as half a form has none.
#pragma once

#include <cstdint>
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

  // The contents of a file on the disk. The stamp is none if the file system has none.
  struct TContents {
    std::string Bytes;
    std::optional<win::TFileStamp> Stamp;
  };
  // Reads a file. May be called on any thread. Raises rtl::EFOpenError or rtl::EReadError.
  static TContents ReadContents(const std::string& fileName);

  const std::string& FileName() const { return FFileName; }
  // Returns the bytes, byte order mark included, and loads the file if that was not done yet. Raises
  // rtl::EFOpenError or rtl::EReadError if it cannot be loaded, and those of `make` (SetBytesLater).
  const std::string& Bytes();
  // Returns whether Bytes needs no access to the disk.
  bool IsLoaded() const { return FOnDisk || FChanged || FMake; }
  // Loads the buffer with the result of ReadContents. It must not have been loaded yet.
  void SetContents(TContents contents);
  // Marks the buffer as modified. `make` returns its bytes; it is called when they are needed, once unless it
  // raises an exception. It must stay callable until the buffer changes in another way.
  void SetBytesLater(std::function<std::string()> make);
  // Discards the changes in memory, without access to the disk.
  void Revert();
  bool Modified() const { return FChanged || FMake; }
  // Returns a number that grows with each change of the bytes in memory, and not when they are saved.
  uint64_t Version() const { return FVersion; }

  // Returns the stamp of the file that was loaded or saved last; none before, and if the file system has
  // none.
  const std::optional<win::TFileStamp>& Stamp() const { return FLoaded; }
  // Returns whether the file exists and is not the one that was loaded or saved last: somebody has written or
  // replaced it since.
  bool ChangedOnDisk() const;

  // Writes a modified buffer to its file, which is replaced in one step (win::ReplaceFileContents). Returns
  // true if the file now holds the bytes of the buffer. Returns false otherwise, with the reason in
  // win::GetLastError; the buffer stays modified. A file that was changed on the disk is
  // ERROR_SHARING_VIOLATION and is not written, unless `overwriteChanged` is set. Raises the exceptions of
  // `make`; the file and the buffer are as before then.
  [[nodiscard]] bool Save(bool overwriteChanged = false);
  // Reads the file again and discards the changes in memory. Returns false if the file cannot be read; the
  // buffer is then as before. A buffer that was not loaded yet is not loaded.
  [[nodiscard]] bool Reload();
  // Discards the changes in memory and takes the result of ReadContents for the file.
  void Reload(TContents contents);

  // The code page in which people read the file, if it has no byte order mark; 0 for the source code page.
  uint32_t CodePage() const { return FCodePage; }
  void SetCodePage(uint32_t codePage) { FCodePage = codePage; }

  // Called after each change of Bytes or Modified.
  std::function<void(TFileBuffer& buffer)> OnChange;

 private:
  void BytesChanged() {
    ++FVersion;
    Changed();
  }
  void Changed() {
    if (OnChange) OnChange(*this);
  }

  std::string FFileName;
  uint32_t FCodePage = 0;
  uint64_t FVersion = 0;
  std::optional<std::string> FOnDisk;      // the bytes that were loaded or saved last; nullopt before
  std::optional<win::TFileStamp> FLoaded;  // of the file that was loaded or saved last
  std::optional<std::string> FChanged;     // the bytes in memory, if they differ
  std::function<std::string()> FMake;      // gives the bytes in memory, if they are not made yet
};

}  // namespace host
