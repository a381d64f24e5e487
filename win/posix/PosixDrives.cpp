#include <algorithm>
#include <array>
#include <cerrno>
#include <limits.h>
#include <optional>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "win/paths/Drives.h"
#include "win/paths/FileNames.h"
#include "win/paths/PathComponents.h"
#include "win/posix/PosixPath.h"

namespace win {
namespace {

// The folder of each letter, full and without a separator at its end. The root folder is the empty string.
using TDrives = std::array<std::optional<std::string>, 26>;

TDrives& Drives() {
  static TDrives drives = [] {
    TDrives initial;
    initial['Z' - 'A'] = "";
    return initial;
  }();
  return drives;
}

// Returns the index of a drive letter, or -1.
int DriveIndex(char letter) {
  if (letter >= 'a' && letter <= 'z') return letter - 'a';
  return letter >= 'A' && letter <= 'Z' ? letter - 'A' : -1;
}

// Returns the folder of a path's drive, or null if the drive is not mapped.
const std::string* FolderOfDrive(std::string_view path) {
  const int index = DriveIndex(path[0]);
  if (index < 0) return nullptr;
  const auto& folder = Drives()[static_cast<size_t>(index)];
  return folder ? &*folder : nullptr;
}

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && DriveIndex(path[0]) >= 0;
}

// Returns the root of a drive: "C:\\" for 2.
std::string DriveRoot(int index) {
  return {static_cast<char>('A' + index), ':', '\\'};
}

std::string CurrentFolder() {
  std::vector<char> buffer(PATH_MAX);
  while (!getcwd(buffer.data(), buffer.size())) {
    if (errno != ERANGE) return {};
    buffer.resize(buffer.size() * 2);
  }
  return buffer.data();
}

// Returns the full host path in its shortest spelling, without a separator at its end. The root folder is
// empty.
std::string FullHostPath(std::string_view hostPath, bool backslashes) {
  const bool full = !hostPath.empty() && (hostPath[0] == '/' || (backslashes && hostPath[0] == '\\'));
  std::string result = "/";
  if (!full) AppendComponents(result, 1, CurrentFolder(), kHostSeparators);
  AppendComponents(result, 1, hostPath, backslashes ? kWindowsSeparators : kHostSeparators);
  return result.size() == 1 ? std::string() : result;
}

// Returns the Windows path of a full host path, on the drive of the deepest folder that contains it.
std::string OnDeepestDrive(std::string_view full) {
  int best = -1;
  for (int i = 0; i < 26; ++i) {
    const auto& folder = Drives()[static_cast<size_t>(i)];
    if (!folder || full.substr(0, folder->size()) != *folder) continue;
    if (full.size() > folder->size() && full[folder->size()] != '/') continue;
    if (best < 0 || folder->size() > Drives()[static_cast<size_t>(best)]->size()) best = i;
  }
  if (best < 0) return {};
  std::string rest(full.substr(Drives()[static_cast<size_t>(best)]->size()));
  if (!IsWindowsName(rest)) return {};
  std::replace(rest.begin(), rest.end(), '/', '\\');
  return DriveRoot(best).append(rest, rest.empty() ? 0 : 1);
}

}  // namespace

bool IsWindowsName(std::string_view name) {
  const auto isBad = [](char c) {
    return c == '\\' || c == ':' || (static_cast<unsigned char>(c) < 32 && c != '\t');
  };
  return std::none_of(name.begin(), name.end(), isBad) && IsValidUtf8(name);
}

bool CanMapDrives() {
  return true;
}

bool MapDrive(char letter, std::string_view hostFolder) {
  const int index = DriveIndex(letter);
  struct stat info {};
  if (index < 0 || hostFolder.empty() || stat(std::string(hostFolder).c_str(), &info) != 0 ||
      !S_ISDIR(info.st_mode)) {
    return false;
  }
  Drives()[static_cast<size_t>(index)] = FullHostPath(hostFolder, false);
  return true;
}

void ResetDrives() {
  Drives() = {};
  Drives()['Z' - 'A'] = "";
}

std::string ToHostName(std::string_view path) {
  if (path.empty() || path.substr(0, 2) == "\\\\") return {};
  std::string result;
  if (HasDrive(path)) {
    const std::string* const folder = FolderOfDrive(path);
    if (!folder) return {};
    result.reserve(folder->size() + path.size());
    result.append(*folder) += '/';
    const size_t root = result.size();
    AppendComponents(result, root, path.substr(2), kWindowsSeparators);
    if (result.size() == root && root > 1) result.pop_back();
    return result;
  }
  const bool rooted = IsSeparator(path[0]);
  if (rooted) result = "/";
  AppendComponents(result, result.size(), path, kWindowsSeparators, '/',
                   rooted ? TParents::Drop : TParents::Keep);
  return result.empty() ? "." : result;
}

std::string RespelledPath(std::string_view path, std::string_view hostName) {
  std::string result;
  if (const std::string* const folder = HasDrive(path) ? FolderOfDrive(path) : nullptr) {
    result = DriveRoot(DriveIndex(path[0]));
    hostName.remove_prefix(std::min(hostName.size(), folder->size() + 1));
  }
  result += hostName;
  std::replace(result.begin(), result.end(), '/', '\\');
  return result;
}

std::string ToWindowsPath(std::string_view typed) {
  if (typed.empty()) return {};
  if (HasDrive(typed)) {
    std::string below;
    AppendComponents(below, 0, typed.substr(2), kWindowsSeparators);
    const std::string* const folder = FolderOfDrive(typed);
    if (!IsWindowsName(below) || !folder) return {};
    const size_t root = folder->size() + 1;
    below = *folder + '/' + below;
    if (!TrimComponents(below, root, kHostSeparators, IsTaken)) return {};
    below.erase(0, root);
    std::replace(below.begin(), below.end(), '/', '\\');
    return DriveRoot(DriveIndex(typed[0])) + below;
  }
  if (typed.substr(0, 2) == "\\\\") return {};
  // A host file whose name contains a backslash has no Windows path.
  struct stat info {};
  if (typed.find('\\') != std::string_view::npos && lstat(std::string(typed).c_str(), &info) == 0) return {};
  std::string full = FullHostPath(typed, true);
  return TrimComponents(full, 0, kHostSeparators, IsTaken) ? OnDeepestDrive(full) : std::string();
}

}  // namespace win
