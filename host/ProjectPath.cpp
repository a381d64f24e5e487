#include "host/ProjectPath.h"

#include <algorithm>

#include "rtl/text/SysUtils.h"
#include "win/Errors.h"
#include "win/FileSystem.h"
#include "win/paths/Drives.h"
#include "win/paths/FileNames.h"
#include "win/paths/PathComponents.h"

namespace host {

std::string ResolveName(std::string_view baseFile, std::string_view name) {
  // A full host path, on a host without drive letters.
  if (name.starts_with('/') && !name.starts_with("//")) {
    if (std::string path = win::ToWindowsPath(name); !path.empty()) return path;
  }
  std::string path(name);
  std::replace(path.begin(), path.end(), '/', '\\');
  if (rtl::ExtractFileDrive(path).empty()) {
    path.insert(0, path.starts_with('\\') ? rtl::ExtractFileDrive(baseFile) : rtl::ExtractFilePath(baseFile));
  }
  const std::string drive = rtl::ExtractFileDrive(path);
  std::string full = drive + "\\";
  win::AppendComponents(full, full.size(), std::string_view(path).substr(drive.size()), "\\", '\\');
  return full;
}

std::string FileKey(std::string_view fileName) {
  return win::UpperFileName(fileName);
}

TFileKind KindOfFile(std::string_view fileName) {
  const uint32_t attributes = win::FileSystem().GetFileAttributesA(fileName);
  if (attributes == win::INVALID_FILE_ATTRIBUTES) return TFileKind::Missing;
  return (attributes & win::FILE_ATTRIBUTE_DIRECTORY) ? TFileKind::Folder : TFileKind::File;
}

std::string ReasonOfMissing() {
  const uint32_t error = win::GetLastError();
  const bool isMissing = error == win::ERROR_FILE_NOT_FOUND || error == win::ERROR_PATH_NOT_FOUND;
  return isMissing ? "does not exist." : "cannot be read. " + win::SysErrorMessage(error);
}

}  // namespace host
