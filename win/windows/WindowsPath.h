// Paths for the system's functions.
#pragma once

#include <string>
#include <string_view>

#include "win/FileSystem.h"
#include "win/windows/WindowsErrors.h"

namespace win {

// Whether a path may end in a separator.
enum class TPathKind { File, Folder };

// Sets `full` to the full path of a Windows path, in the form that has no limit of 260 characters and in
// which a name such as "con.pas" is a file's and not a device's: "\\?\C:\Src\Unit1.pas",
// "\\?\UNC\server\share\Unit1.pas". It has no separator at its end unless it is a drive's root. Dots and blanks
// at the end of a name are removed, unless the path is in that form already. On failure returns false, with
// the last error set.
[[nodiscard]] bool FullPath(std::string_view path, TPathKind kind, std::wstring& full);

// Returns the path without the prefix of FullPath: "C:\Src\Unit1.pas".
[[nodiscard]] std::wstring WithoutPrefix(std::wstring_view full);

// Returns the length of the part of a full path that is its root, "\\?\C:\" or "\\?\UNC\server\share\".
[[nodiscard]] size_t RootLength(std::wstring_view full);

// Returns the folder of a full path, with its separator, and the name in it.
[[nodiscard]] std::wstring_view FolderOf(std::wstring_view full);
[[nodiscard]] std::wstring_view LeafOf(std::wstring_view full);

// An entry of a folder, not followed if it is a link.
struct TEntryInfo {
  uint32_t Attributes = 0;  // the system's
  bool IsLink = false;      // a symbolic link or a junction, which stands for another file or folder

  bool IsFolder() const { return (Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  bool IsReadOnly() const { return (Attributes & FILE_ATTRIBUTE_READONLY) != 0; }
};

// Describes the entry at a full path. On failure returns false, with the last error set.
[[nodiscard]] bool Look(const std::wstring& full, TEntryInfo& info);

// Returns whether data of a folder walk describe a link.
[[nodiscard]] bool IsLink(const WIN32_FIND_DATAW& data);

// Returns the name at a full path as it is spelled on disk, its long form; as given if there is no such
// entry.
[[nodiscard]] std::wstring SpelledLeaf(const std::wstring& full);

// Returns the full path with each component spelled as on disk.
[[nodiscard]] std::wstring SpelledPath(const std::wstring& full);

// Sets `full` to the full path of the file that a link leads to. On failure returns false, with the last
// error set.
[[nodiscard]] bool FollowLink(std::wstring& full);

}  // namespace win
