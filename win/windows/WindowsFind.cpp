// Folder walks.
#include <algorithm>

#include "win/Diagnostics.h"
#include "win/Errors.h"
#include "win/paths/CodePage.h"
#include "win/windows/WindowsFileSystem.h"
#include "win/windows/WindowsText.h"

namespace win {
namespace {

struct TEntry {
  std::string Upper;
  TFindData Data;
};

class TWindowsFindHandle : public TFindHandle {
 public:
  explicit TWindowsFindHandle(std::vector<TEntry> entries) : FEntries(std::move(entries)) {}

  bool Next(TFindData& data) override {
    if (FNext < 2) {
      data = {FNext++ == 0 ? "." : "..", FILE_ATTRIBUTE_DIRECTORY};
      return true;
    }
    if (FNext - 2 == FEntries.size()) return Fail(ERROR_NO_MORE_FILES);
    data = std::move(FEntries[FNext++ - 2].Data);
    return true;
  }

 private:
  std::vector<TEntry> FEntries;
  size_t FNext = 0;  // counts "." and ".." too
};

uint32_t AttributesOf(const WIN32_FIND_DATAW& data) {
  if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) return FILE_ATTRIBUTE_NORMAL;
  return IsLink(data) ? FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT : FILE_ATTRIBUTE_DIRECTORY;
}

bool EntryLess(const TEntry& left, const TEntry& right) {
  const int order = CompareUtf16Order(left.Upper, right.Upper);
  return order != 0 ? order < 0 : CompareUtf16Order(left.Data.FileName, right.Data.FileName) < 0;
}

}  // namespace

std::unique_ptr<TFindHandle> TWindowsFileSystem::FindFirstFileA(std::string_view pattern, TFindData& data) {
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
  std::vector<TEntry> entries;
  uint32_t failure = search == INVALID_HANDLE_VALUE ? ::GetLastError() : ERROR_SUCCESS;
  while (failure == ERROR_SUCCESS) {
    const std::wstring_view name = found.cFileName;
    if (std::optional<std::string> utf8 = ToUtf8(name); !utf8) {
      const std::wstring path = folder + std::wstring(name);
      if (FPassedOver.insert(path).second)
        Diagnose("Passed over, because no Windows path can name it: " +
                 PrintableName(ToUtf8OrReplaced(WithoutPrefix(path))));
    } else if (name != L"." && name != L"..") {
      entries.push_back({UpperFileName(*utf8), {*utf8, AttributesOf(found)}});
    }
    if (!FindNextFileW(search, &found)) failure = ::GetLastError();
  }
  if (search != INVALID_HANDLE_VALUE) FindClose(search);
  // A drive's root folder has no entries "." and "..", so an empty one has none at all.
  if (failure != ERROR_NO_MORE_FILES && failure != ERROR_FILE_NOT_FOUND) {
    Fail(failure);
    return nullptr;
  }
  std::sort(entries.begin(), entries.end(), EntryLess);
  auto handle = std::make_unique<TWindowsFindHandle>(std::move(entries));
  return handle->Next(data) ? std::move(handle) : nullptr;
}

}  // namespace win
