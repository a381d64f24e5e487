#include "win/FolderEntries.h"

#include <algorithm>
#include <utility>

#include "win/Errors.h"
#include "win/paths/FileNames.h"

namespace win {

class TFolderEntries::TWalk : public TFindHandle {
 public:
  explicit TWalk(std::vector<TEntry> entries) : FEntries(std::move(entries)) {}

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

std::unique_ptr<TFindHandle> TFolderEntries::Walk(TFindData& data) && {
  std::sort(FEntries.begin(), FEntries.end(), Less);
  auto walk = std::make_unique<TWalk>(std::exchange(FEntries, {}));
  return walk->Next(data) ? std::move(walk) : nullptr;
}

}  // namespace win
