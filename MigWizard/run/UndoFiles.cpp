#include "MigWizard/run/UndoFiles.h"

#include <algorithm>
#include <charconv>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

struct TFound {
  std::string FileName;
  int64_t Modified;
  int Number;  // of the backup folder; 0 for the folder itself
};

// Returns 1 for RBackup, N for RBackup.N, and 0 for any other name.
int NumberOf(std::string_view folderName) {
  constexpr std::string_view kFirst = SBackupFolderName;
  if (!rtl::SameText(folderName.substr(0, kFirst.size()), kFirst)) return 0;
  const std::string_view rest = folderName.substr(kFirst.size());
  if (rest.empty()) return 1;
  int number = 0;
  const auto [end, error] = std::from_chars(rest.data() + 1, rest.data() + rest.size(), number);
  return rest[0] == '.' && error == std::errc() && end == rest.data() + rest.size() && number > 1 ? number
                                                                                                  : 0;
}

void Look(const std::string& folder, int number, std::vector<TFound>& found) {
  for (const char* const name : {SJournalFileName, SUndoFileName}) {
    const std::string fileName = JoinPath(folder, name);
    const auto stamp = win::GetFileStamp(fileName);
    if (!stamp || stamp->Size == 0) continue;
    found.push_back({fileName, stamp->Modified, number});
    return;
  }
}

}  // namespace

std::vector<std::string> FindUndoFiles(std::string_view dir) {
  const std::string base(dir);
  std::vector<TFound> found;
  Look(base, 0, found);
  rtl::TFolderEntries entries(base);
  while (entries.Next()) {
    const int number = NumberOf(entries.Name());
    if (number > 0 && entries.IsFolder()) Look(entries.Path(), number, found);
  }
  // Sorts by time, not only by number, because a run reuses the number of a deleted folder.
  std::sort(found.begin(), found.end(), [](const TFound& left, const TFound& right) {
    return left.Modified != right.Modified ? left.Modified > right.Modified : left.Number > right.Number;
  });
  std::vector<std::string> fileNames;
  fileNames.reserve(found.size());
  for (TFound& one : found) fileNames.push_back(std::move(one.FileName));
  return fileNames;
}

}  // namespace mig
