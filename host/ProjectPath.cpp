#include "host/ProjectPath.h"

#include <algorithm>
#include <vector>

#include "rtl/text/SysUtils.h"
#include "win/Errors.h"
#include "win/FileSystem.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace host {

namespace {

// Returns `rest`, the part of a path after its drive, with one separator at its beginning and without the
// components "", "." and "..".
std::string WithoutDots(std::string_view rest) {
  std::vector<std::string_view> parts;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find('\\'), rest.size());
    const std::string_view part = rest.substr(0, end);
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  std::string result;
  for (const std::string_view part : parts) result.append("\\").append(part);
  return result.empty() ? "\\" : result;
}

}  // namespace

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
  std::string drive = rtl::ExtractFileDrive(path);
  return drive + WithoutDots(std::string_view(path).substr(drive.size()));
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
