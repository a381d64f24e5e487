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

// The full Windows path for what a user typed: a host path or a Windows path, relative or full, with either
// separator. "." and ".." are resolved by text. The deepest mapped folder that holds the path gives the
// drive. Empty if the host path cannot be written as a Windows path (it holds a backslash that is no
// separator, or is not UTF-8), or its drive is not mapped.
[[nodiscard]] std::string ToWindowsPath(std::string_view typed);

}  // namespace win
