#include "win/windows/WindowsPath.h"

#include <algorithm>
#include <optional>

#include "win/paths/PathComponents.h"
#include "win/windows/WindowsAccess.h"
#include "win/windows/WindowsText.h"

namespace win {
namespace {

constexpr std::wstring_view kPrefix = LR"(\\?\)";
constexpr std::wstring_view kNetworkPrefix = LR"(\\?\UNC\)";
constexpr std::wstring_view kDevices = LR"(\\.\)";

// Returns whether no name of a file or folder has the character. A colon would name another stream of a file.
bool IsForbidden(wchar_t c) {
  return c < 32 || std::wstring_view(LR"(<>:"|?*)").find(c) != std::wstring_view::npos;
}

// Returns the length of the part before the names: of "\\?\" and "C:", where the path begins with them.
size_t DriveLength(std::wstring_view path) {
  const size_t start = path.starts_with(kPrefix) ? kPrefix.size() : 0;
  return path.substr(start).find(L':') == 1 ? start + 2 : start;
}

// Appends the system's full path of `folder` to `full`. On failure returns false, with the last error set.
bool AppendFullFolder(const std::wstring& folder, std::wstring& full) {
  std::wstring buffer(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFullPathNameW(folder.c_str(), static_cast<DWORD>(buffer.size()), buffer.data(), nullptr);
    if (length == 0) return FailLast();
    const bool isWhole = length < buffer.size();
    buffer.resize(length);
    if (isWhole) break;
  }
  if (buffer.starts_with(kDevices)) return Fail(ERROR_ACCESS_DENIED);
  if (buffer.starts_with(kPrefix)) {
    full = buffer;
  } else if (buffer.starts_with(LR"(\\)")) {
    full.append(kNetworkPrefix).append(buffer, 2);
  } else {
    full.append(kPrefix).append(buffer);
  }
  if (full.back() != L'\\') full += L'\\';
  return true;
}

}  // namespace

bool FullPath(std::string_view path, TPathKind kind, std::wstring& full) {
  full.clear();
  if (path.empty()) return Fail(ERROR_PATH_NOT_FOUND);
  std::string trimmed(path);
  if (!path.starts_with(R"(\\?\)") &&
      !TrimComponents(trimmed, 0, kWindowsSeparators, [](const std::string&) { return false; }))
    return Fail(ERROR_INVALID_NAME);
  std::optional<std::wstring> wide = ToWide(trimmed);
  if (!wide || wide->find(L'\0') != std::wstring::npos) return Fail(ERROR_INVALID_NAME);
  std::replace(wide->begin(), wide->end(), L'/', L'\\');
  if (kind == TPathKind::File && wide->back() == L'\\') return Fail(ERROR_INVALID_NAME);
  const size_t drive = DriveLength(*wide);
  if (std::any_of(wide->begin() + static_cast<std::ptrdiff_t>(drive), wide->end(), IsForbidden))
    return Fail(ERROR_INVALID_NAME);
  // The name itself is kept away from the system's full path, which makes "\\.\con" of "C:\con.pas".
  const size_t start = std::max(drive, wide->rfind(L'\\') + 1);  // npos + 1 is 0
  std::wstring leaf = wide->substr(start);
  std::wstring folder = wide->substr(0, start);
  if (leaf == L"." || leaf == L"..") {
    folder = *wide;
    leaf.clear();
  }
  if (!AppendFullFolder(folder.empty() ? L"." : folder, full)) return false;
  full += leaf;
  if (leaf.empty() && full.size() > RootLength(full)) full.pop_back();
  return true;
}

std::wstring WithoutPrefix(std::wstring_view full) {
  if (full.starts_with(kNetworkPrefix)) return LR"(\\)" + std::wstring(full.substr(kNetworkPrefix.size()));
  return std::wstring(full.starts_with(kPrefix) ? full.substr(kPrefix.size()) : full);
}

size_t RootLength(std::wstring_view full) {
  const auto after = [full](size_t start) { return std::min(full.find(L'\\', start), full.size() - 1) + 1; };
  if (full.starts_with(kNetworkPrefix)) return std::min(after(after(kNetworkPrefix.size())), full.size());
  return after(kPrefix.size());
}

std::wstring_view FolderOf(std::wstring_view full) {
  return full.substr(0, full.rfind(L'\\') + 1);
}

std::wstring_view LeafOf(std::wstring_view full) {
  return full.substr(full.rfind(L'\\') + 1);
}

bool IsLink(const WIN32_FIND_DATAW& data) {
  // A file system that does not say what kind of reparse point it is has tag 0.
  return (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (data.dwReserved0 == 0 || IsReparseTagNameSurrogate(data.dwReserved0));
}

bool Look(const std::wstring& full, TEntryInfo& info) {
  info.Attributes = GetFileAttributesW(full.c_str());
  info.IsLink = false;
  if (info.Attributes == INVALID_FILE_ATTRIBUTES) return FailLast();
  if ((info.Attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && full.size() > RootLength(full)) {
    WIN32_FIND_DATAW data;
    const HANDLE search = FindFirstFileW(full.c_str(), &data);
    if (search == INVALID_HANDLE_VALUE) return FailLast();
    FindClose(search);
    info.IsLink = IsLink(data);
  }
  return true;
}

std::wstring SpelledLeaf(const std::wstring& full) {
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW(full.c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) return std::wstring(LeafOf(full));
  FindClose(search);
  return data.cFileName;
}

std::wstring SpelledPath(const std::wstring& full) {
  std::wstring spelled = full.substr(0, RootLength(full));
  for (size_t start = spelled.size(); start < full.size();) {
    const size_t end = std::min(full.find(L'\\', start), full.size());
    if (spelled.back() != L'\\') spelled += L'\\';
    const std::wstring leaf = SpelledLeaf(spelled + full.substr(start, end - start));
    spelled += leaf;
    start = end + 1;
  }
  return spelled;
}

bool FollowLink(std::wstring& full) {
  const THandle file(CreateFileW(full.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.IsOpen()) return FailLast();
  std::wstring buffer(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetFinalPathNameByHandleW(file.Get(), buffer.data(),
                                                   static_cast<DWORD>(buffer.size()), VOLUME_NAME_DOS);
    if (length == 0) return FailLast();
    const bool isWhole = length < buffer.size();
    buffer.resize(length);
    if (isWhole) break;
  }
  full = buffer;
  return true;
}

}  // namespace win
