// Windows paths and the host's names.
//
// On Windows both are the same. Elsewhere a drive letter is a folder of the host: `Z:` is the root folder
// unless it is mapped otherwise, and further letters are mapped one by one. The map is a setting of the
// process, made before the first file is touched.
#pragma once

#include <string>
#include <string_view>

namespace win {

// Maps `letter` (any case) to a folder of the host; a relative one is made full. False if `letter` is no
// letter or the folder does not exist.
[[nodiscard]] bool MapDrive(char letter, std::string_view hostFolder);
// Forgets all mappings; `Z:` is the root folder again.
void ResetDrives();

// The host's name for a Windows path: drive mapped, separators turned, case as given. A relative path stays
// relative to the process's folder. Empty if the drive is not mapped.
[[nodiscard]] std::string ToHostName(std::string_view path);

// The Windows path for `hostName`, which is what ToHostName gave for `path` with its components spelled
// otherwise. The drive, or what else the path begins with, stays.
[[nodiscard]] std::string RespelledPath(std::string_view path, std::string_view hostName);

// Whether a Windows path can hold the name of a host's file or folder: it is UTF-8, and has no backslash, no
// colon (to which the drive belongs) and no control character (which would break the lines of an undo file).
[[nodiscard]] bool IsWindowsName(std::string_view name);

// The full Windows path for what a user typed: a host path or a Windows path, relative or full, with either
// separator. "." and ".." are resolved by text. The deepest mapped folder that holds the path gives the
// drive. Empty if a component below that folder is no Windows name (where a file of the host has a backslash
// in its very name, that is no separator), or the drive is not mapped.
[[nodiscard]] std::string ToWindowsPath(std::string_view typed);

}  // namespace win
