// Reading whole files, creating folders, and listing the entries of a folder. File names are Windows paths.
// The operations use the current file system (win/FileSystem.h).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "win/FileSystem.h"

namespace rtl {

// Returns the bytes of a file. Raises EFOpenError or EReadError.
std::string ReadFile(std::string_view fileName);

// Creates a folder and all missing folders above it. Returns false if that failed, with the reason in
// win::GetLastError; folders that were created remain. A folder that exists already is a success.
[[nodiscard]] bool CreateFolders(std::string_view folder);

// Walks the entries of a folder, except "." and "..", in the order of win::FindFirstFileA:
//
//   rtl::TFolderEntries entries(folder);
//   while (entries.Next())
//     if (!entries.IsFolder()) Use(entries.Path());
//   if (!entries.IsComplete()) ...
class TFolderEntries {
 public:
  explicit TFolderEntries(std::string_view folder);

  // Moves to the next entry; the first call moves to the first one. Returns false after the last entry, and
  // if the folder cannot be read (any further).
  [[nodiscard]] bool Next();
  // Returns, after Next has returned false, whether the folder was read to its end. Otherwise Error is the
  // reason.
  bool IsComplete() const;
  uint32_t Error() const { return FError; }  // a number for win::SysErrorMessage
  // Returns the entries that no Windows path can name. Next does not return them.
  const std::vector<win::TUnnamedEntry>& Unnamed() const { return FUnnamed; }

  // The current entry.
  const std::string& Name() const { return FData.FileName; }
  std::string Path() const { return FFolder + FData.FileName; }
  // True for a folder, and for a link to a folder.
  bool IsFolder() const { return (FData.FileAttributes & win::FILE_ATTRIBUTE_DIRECTORY) != 0; }
  // True for a link to a folder.
  bool IsLink() const { return (FData.FileAttributes & win::FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

 private:
  std::string FFolder;  // with a backslash at its end
  std::unique_ptr<win::TFindHandle> FWalk;
  std::vector<win::TUnnamedEntry> FUnnamed;
  win::TFindData FData;
  bool FHasEntry = false;  // the first entry, which FindFirstFileA read, was not returned yet
  uint32_t FError = 0;
};

}  // namespace rtl
