#include "win/windows/WindowsFind.h"

#include <optional>

#include "win/Errors.h"
#include "win/FolderEntries.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"
#include "win/windows/WindowsPath.h"
#include "win/windows/WindowsText.h"

namespace win {
namespace {

uint32_t AttributesOf(const WIN32_FIND_DATAW& data) {
  if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) return FILE_ATTRIBUTE_NORMAL;
  return IsLink(data) ? FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT : FILE_ATTRIBUTE_DIRECTORY;
}

}  // namespace

std::unique_ptr<TFindHandle> FindFirst(std::unordered_set<std::string>& reported, std::string_view pattern,
                                       TFindData& data) {
  const size_t end = pattern.find_last_of("\\/:") + 1;  // npos + 1 is 0
  if (pattern.substr(end) != "*.*") {
    Fail(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  std::wstring folder;
  TEntryInfo info;
  if (!FullPath(end == 0 ? "." : pattern.substr(0, end), TPathKind::Folder, folder)) return nullptr;
  if (!Look(folder, info)) {
    if (GetLastError() == ERROR_FILE_NOT_FOUND) SetLastError(ERROR_PATH_NOT_FOUND);
    return nullptr;
  }
  if (!info.IsFolder()) {
    Fail(ERROR_DIRECTORY);
    return nullptr;
  }
  if (folder.back() != L'\\') folder += L'\\';
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileExW((folder + L"*").c_str(), FindExInfoBasic, &found,
                                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  TFolderEntries entries;
  uint32_t failure = search == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
  while (failure == ERROR_SUCCESS) {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") {
      // which the walk adds itself
    } else if (std::optional<std::string> utf8 = ToUtf8(name); utf8 && IsWindowsName(*utf8)) {
      entries.Add(*std::move(utf8), AttributesOf(found));
    } else {
      entries.AddUnnamed(ToUtf8OrReplaced(name), AttributesOf(found) == FILE_ATTRIBUTE_DIRECTORY,
                         ToUtf8OrReplaced(WithoutPrefix(folder + std::wstring(name))));
    }
    if (!FindNextFileW(search, &found)) failure = ::GetLastError();
  }
  if (search != INVALID_HANDLE_VALUE) FindClose(search);
  // A drive's root folder has no entries "." and "..", so an empty one has none at all.
  if (failure != ERROR_NO_MORE_FILES && failure != ERROR_FILE_NOT_FOUND) {
    Fail(failure);
    return nullptr;
  }
  return std::move(entries).Walk(reported, data);
}

}  // namespace win
