// On Windows the host's names are Windows paths, and the drives are the machine's.
#include <algorithm>

#include "win/paths/Drives.h"
#include "win/paths/FileNames.h"
#include "win/windows/WindowsPath.h"
#include "win/windows/WindowsText.h"

namespace win {

bool CanMapDrives() {
  return false;
}

bool MapDrive(char /*letter*/, std::string_view /*hostFolder*/) {
  return false;
}

void ResetDrives() {}

std::string ToHostName(std::string_view path) {
  return std::string(path);
}

std::string RespelledPath(std::string_view /*path*/, std::string_view hostName) {
  return std::string(hostName);
}

bool IsWindowsName(std::string_view name) {
  const auto isBad = [](char c) {
    return static_cast<unsigned char>(c) < 32 ||
           std::string_view(R"(\/:*?"<>|)").find(c) != std::string_view::npos;
  };
  // Other systems can create names that end in a dot or blank.
  return std::none_of(name.begin(), name.end(), isBad) && !name.ends_with('.') && !name.ends_with(' ') &&
         IsValidUtf8(name);
}

std::string ToWindowsPath(std::string_view typed) {
  std::wstring full;
  if (!FullPath(typed, TPathKind::Folder, full)) return {};
  full = WithoutPrefix(full);
  if (full.size() > 1 && full[1] == L':' && full[0] >= L'a' && full[0] <= L'z')
    full[0] = static_cast<wchar_t>(full[0] - L'a' + L'A');
  return ToUtf8(full).value_or(std::string());
}

}  // namespace win
