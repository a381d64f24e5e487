#include "MigWizard/run/UnitList.h"

#include <deque>
#include <unordered_map>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/OtherForms.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

// Replaces bare names by the full names of modules. A module replaces the first entry of its name that is
// still a bare name.
void InitProjectUnits(const TReplaceOptions& options, const TRunHooks& hooks, rtl::TStringList& units) {
  units.SetText(options.UnitNames);
  std::unordered_map<std::string, std::deque<int>> bareNames;
  for (int i = 0; i < units.Count(); ++i) bareNames[rtl::LowerCase(units[i])].push_back(i);

  const int moduleCount = TIDEUtils::GetModuleCount();
  for (int i = 0; i < moduleCount; ++i) {
    const std::string fileName = TIDEUtils::GetModuleFileName(i);
    if (!IsUnitModule(fileName)) continue;
    const auto entries = bareNames.find(rtl::LowerCase(rtl::ExtractFileName(fileName)));
    if (entries == bareNames.end() || entries->second.empty()) continue;
    units.Put(entries->second.front(), fileName);
    entries->second.pop_front();
  }
  for (int i = units.Count() - 1; i >= 0; --i)
    if (hooks.IsExcluded(units[i])) units.Delete(i);
}

class TFolderScan {
 public:
  TFolderScan(const TRunHooks& hooks, rtl::TStringList& units, std::vector<TLeftOut>& leftOut,
              std::vector<std::string>* forms)
      : FHooks(hooks), FUnits(units), FLeftOut(leftOut), FForms(forms) {}

  // Does not follow links to folders.
  void ScanFolder(const std::string& dir, bool includeSubDirs) {
    rtl::TFolderEntries entries(dir);
    while (entries.Next()) {
      const std::string path = entries.Path();
      if (entries.IsFolder() && (includeSubDirs || entries.IsLink())) {
        if (!entries.IsLink()) ScanFolder(path, includeSubDirs);
      } else if (IsUnitSource(entries.Name()) && !FHooks.IsExcluded(path)) {
        FUnits.Add(path);
      } else if (FForms != nullptr && !entries.IsFolder() && IsFormFile(entries.Name())) {
        FForms->push_back(path);
      }
    }
    if (!entries.IsComplete()) LeaveOutFolder(dir, entries.Error());
    for (const win::TUnnamedEntry& entry : entries.Unnamed()) LeaveOut(dir, entry, includeSubDirs);
  }

 private:
  // The user knows of the entry already.
  void LeaveOut(const std::string& dir, const win::TUnnamedEntry& entry, bool includeSubDirs) {
    const bool isInRun = entry.IsFolder ? includeSubDirs : IsUnitSource(entry.Name);
    // A folder is excluded by a pattern for all files in it.
    const std::string path = JoinPath(dir, entry.Name);
    if (isInRun && !FHooks.IsExcluded(entry.IsFolder ? JoinPath(path, ".pas") : path))
      FLeftOut.push_back({entry.Name, entry.Message});
  }

  void LeaveOutFolder(const std::string& dir, uint32_t error) {
    const std::string message =
        rtl::Format("The folder \"%s\" could not be read. %s", {dir, win::SysErrorMessage(error)});
    FLeftOut.push_back({dir, message});
    FHooks.Warn(message);
  }

  const TRunHooks& FHooks;
  rtl::TStringList& FUnits;
  std::vector<TLeftOut>& FLeftOut;
  std::vector<std::string>* const FForms;  // null: not listed
};

}  // namespace

void InitUnitList(const TReplaceOptions& options, const TRunHooks& hooks, rtl::TStringList& units,
                  std::vector<TLeftOut>& leftOut, std::vector<std::string>* forms) {
  if (options.Dest == sdProject) {
    InitProjectUnits(options, hooks, units);
  } else {
    TFolderScan(hooks, units, leftOut, forms).ScanFolder(options.Directory, options.IncludeSubDirs);
  }
}

std::string RunFolder(const TReplaceOptions& options) {
  return options.Dest == sdProject ? rtl::ExtractFileDir(TIDEUtils::GetProjectFileName()) : options.Directory;
}

}  // namespace mig
