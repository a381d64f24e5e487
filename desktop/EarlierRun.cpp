#include "desktop/EarlierRun.h"

#include <set>
#include <utility>
#include <vector>

#include "MigWizard/run/Restore.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace desktop {

TReviewSetPtr ReadEarlierRun(const std::string& undoFile, const std::string& folder) {
  // The file system of the main thread is not for others.
  const std::unique_ptr<win::TFileSystem> fileSystem = win::AnotherHostFileSystem();
  const win::TFileSystemOverride inForce(*fileSystem);
  mig::TRestorePlan plan;
  plan.Add(undoFile);
  if (plan.Lines().empty()) throw rtl::Exception("The undo file \"" + undoFile + "\" lists nothing.");
  std::vector<TReviewSet::TVersions> files;
  std::set<std::string> known;  // of several backups of a file, the first one is its own
  for (const mig::TRestoreLine& line : plan.Lines()) {
    if (!known.insert(win::UpperFileName(line.Original)).second) continue;
    std::string before = rtl::ReadFile(line.Backup);
    std::string after = rtl::FileExists(line.Original) ? rtl::ReadFile(line.Original) : std::string();
    if (before != after) files.push_back({line.Original, std::move(before), std::move(after)});
  }
  return std::make_shared<TReviewSet>(std::move(files), folder);
}

}  // namespace desktop
