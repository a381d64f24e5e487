#include "win/FolderEntries.h"

#include <algorithm>
#include <utility>

#include "win/Diagnostics.h"
#include "win/Errors.h"
#include "win/paths/FileNames.h"

namespace win {

class TFolderEntries::TWalk : public TFindHandle {
 public:
  TWalk(std::vector<TEntry> entries, std::vector<TUnnamedEntry> unnamed)
      : TFindHandle(std::move(unnamed)), FEntries(std::move(entries)) {}

  bool Next(TFindData& data) override {
    if (FNext < 2) {
      data = {FNext++ == 0 ? "." : "..", FILE_ATTRIBUTE_DIRECTORY};
      return true;
    }
    if (FNext - 2 == FEntries.size()) {
      SetLastError(ERROR_NO_MORE_FILES);
      return false;
    }
    data = std::move(FEntries[FNext++ - 2].Data);
    return true;
  }

 private:
  std::vector<TEntry> FEntries;
  size_t FNext = 0;  // counts "." and ".." too
};

bool TFolderEntries::Less(const TEntry& left, const TEntry& right) {
  const int order = CompareUtf16Order(left.Upper, right.Upper);
  return order != 0 ? order < 0 : CompareUtf16Order(left.Data.FileName, right.Data.FileName) < 0;
}

void TFolderEntries::Add(std::string name, uint32_t attributes) {
  std::string upper = UpperFileName(name);
  FEntries.push_back({std::move(upper), {std::move(name), attributes}});
}

void TFolderEntries::AddUnnamed(std::string name, bool isFolder, const std::string& path) {
  FUnnamed.push_back(
      {std::move(name), isFolder, "Skipped, because no Windows path can name it: " + PrintableName(path)});
}

std::unique_ptr<TFindHandle> TFolderEntries::Walk(std::unordered_set<std::string>& reported,
                                                  TFindData& data) && {
  std::sort(FEntries.begin(), FEntries.end(), Less);
  std::sort(FUnnamed.begin(), FUnnamed.end(),
            [](const TUnnamedEntry& left, const TUnnamedEntry& right) { return left.Name < right.Name; });
  for (const TUnnamedEntry& entry : FUnnamed)
    if (reported.insert(entry.Message).second) Diagnose(entry.Message);
  auto walk = std::make_unique<TWalk>(std::exchange(FEntries, {}), std::exchange(FUnnamed, {}));
  return walk->Next(data) ? std::move(walk) : nullptr;
}

}  // namespace win
