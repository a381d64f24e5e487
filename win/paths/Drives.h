// Converts between Windows paths and host names.
//
// On Windows both are the same. On other hosts a drive letter is a folder: `Z:` is the root folder unless
// it is mapped otherwise, and further letters are mapped one by one. The map is a setting of the process,
// made before the first file is used.
#pragma once

#include <string>
#include <string_view>

namespace win {

// Returns whether drives can be mapped: not on Windows, where they are the machine's.
[[nodiscard]] bool CanMapDrives();

// Maps `letter` (any case) to a folder of the host, which may be relative to the process's folder. Returns
// false if `letter` is no letter, the folder does not exist, or drives cannot be mapped.
[[nodiscard]] bool MapDrive(char letter, std::string_view hostFolder);
// Forgets all mappings. `Z:` is the root folder again.
void ResetDrives();

// Returns the host's name for a Windows path, with the case as given. A relative path stays relative to the
// process's folder. Returns an empty string if the drive is not mapped.
[[nodiscard]] std::string ToHostName(std::string_view path);

// Returns the Windows path for `hostName`, which is ToHostName(path) with its components spelled
// differently. Keeps the drive, or any other prefix of `path`.
[[nodiscard]] std::string RespelledPath(std::string_view path, std::string_view hostName);

// Returns whether a Windows path can contain the name of a host's file or folder: it is UTF-8 and has no
// backslash, no colon (which separates the drive) and no control character but tab (others would break the
// lines of an undo file). On Windows itself, further characters are not part of names, nor are dots and blanks
// at the end.
[[nodiscard]] bool IsWindowsName(std::string_view name);

// Returns the full Windows path for a path that a user typed: a host path or a Windows path, relative or
// full, with either separator. Resolves "." and ".." in the text. Removes dots and blanks at the ends of names,
// unless the host has an entry of exactly that name. The drive is that of the deepest mapped
// folder that contains the path. Returns an empty string if a component below that folder is no Windows name,
// or if the drive is not mapped. If the host has a file of exactly the typed name, a backslash in it is no
// separator.
[[nodiscard]] std::string ToWindowsPath(std::string_view typed);

}  // namespace win
