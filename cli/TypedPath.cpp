#include "cli/TypedPath.h"

#include <cstdint>

#include "cli/Commands.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace cli {

std::string WindowsPath(const std::string& typed) {
  if (typed.empty()) throw EUsage("A path is empty.");
  std::string path = win::ToWindowsPath(typed);
  if (path.empty())
    throw EUsage("\"" + typed + "\" cannot be written as a Windows path" +
                 (win::CanMapDrives() ? "; is its drive mapped?" : "."));
  return path;
}

void RequireReachable(const std::string& path) {
  if (win::FileSystem().GetFileAttributesA(path) != win::INVALID_FILE_ATTRIBUTES) return;
  const uint32_t error = win::GetLastError();
  if (error == win::ERROR_FILE_NOT_FOUND || error == win::ERROR_PATH_NOT_FOUND) return;
  throw rtl::EFOpenError("Cannot open \"" + path + "\". " + win::SysErrorMessage(error));
}

}  // namespace cli
