#include "MigWizard/run/UnitList.h"

#include <deque>
#include <unordered_map>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/IDEUtils.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

// Replaces bare names by the full names of modules. A module takes the first entry of its name that is still
// a bare name.
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

// Does not follow links to folders.
void ScanFolder(const std::string& dir, bool includeSubDirs, const TRunHooks& hooks,
                rtl::TStringList& units) {
  win::TFindData entry;
  const auto walk = win::FindFirstFileA(JoinPath(dir, "*.*"), entry);
  for (bool found = walk != nullptr; found; found = win::FindNextFileA(*walk, entry)) {
    if (entry.FileName == "." || entry.FileName == "..") continue;
    const bool isFolder = (entry.FileAttributes & win::FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool isLink = (entry.FileAttributes & win::FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    const std::string path = JoinPath(dir, entry.FileName);
    if (isFolder && (includeSubDirs || isLink)) {
      if (!isLink) ScanFolder(path, includeSubDirs, hooks, units);
    } else if (IsUnitSource(entry.FileName) && !hooks.IsExcluded(path)) {
      units.Add(path);
    }
  }
  if (win::GetLastError() != win::ERROR_NO_MORE_FILES)
    hooks.Warn(rtl::Format("The folder \"%s\" could not be read. %s",
                           {dir, win::SysErrorMessage(win::GetLastError())}));
}

}  // namespace

void InitUnitList(const TReplaceOptions& options, const TRunHooks& hooks, rtl::TStringList& units) {
  if (options.Dest == sdProject) {
    InitProjectUnits(options, hooks, units);
  } else {
    ScanFolder(options.Directory, options.IncludeSubDirs, hooks, units);
  }
}

std::string RunFolder(const TReplaceOptions& options) {
  return options.Dest == sdProject ? rtl::ExtractFileDir(TIDEUtils::GetProjectFileName()) : options.Directory;
}

}  // namespace mig
