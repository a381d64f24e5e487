#include "cli/TypedPath.h"

#include "cli/Commands.h"
#include "win/paths/Drives.h"

namespace cli {

std::string WindowsPath(const std::string& typed) {
  std::string path = win::ToWindowsPath(typed);
  if (path.empty())
    throw EUsage("\"" + typed + "\" cannot be written as a Windows path; is its drive mapped?");
  return path;
}

}  // namespace cli
