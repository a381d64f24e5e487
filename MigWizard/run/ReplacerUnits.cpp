// How a run gets its units: from the project, or from a folder.
#include <deque>
#include <unordered_map>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Replacer.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {

// The folder of the log: the project's, or the one that is scanned.
std::string TComponentReplacer::RunFolder() const {
  return FOptions.Dest == sdProject ? rtl::ExtractFileDir(TIDEUtils::GetProjectFileName())
                                    : FOptions.Directory;
}

void TComponentReplacer::InitUnitList() {
  FLog.WriteLine(SInitUnitList);
  if (FOptions.Dest == sdProject) {
    InitProjectUnits();
  } else {
    ScanFolder(FOptions.Directory, FOptions.IncludeSubDirs);
  }
}

// Puts the full name of each module in the place of the first entry that still is its bare name.
void TComponentReplacer::InitProjectUnits() {
  FUnits.SetText(FOptions.UnitNames);
  std::unordered_map<std::string, std::deque<int>> bareNames;
  for (int i = 0; i < FUnits.Count(); ++i) bareNames[rtl::LowerCase(FUnits[i])].push_back(i);

  const int moduleCount = TIDEUtils::GetModuleCount();
  for (int i = 0; i < moduleCount; ++i) {
    const std::string fileName = TIDEUtils::GetModuleFileName(i);
    if (!IsUnitModule(fileName)) continue;
    const auto entries = bareNames.find(rtl::LowerCase(rtl::ExtractFileName(fileName)));
    if (entries == bareNames.end() || entries->second.empty()) continue;
    FUnits.Put(entries->second.front(), fileName);
    entries->second.pop_front();
  }
  for (int i = FUnits.Count() - 1; i >= 0; --i)
    if (IsExcluded(FUnits[i])) FUnits.Delete(i);
}

void TComponentReplacer::ScanFolder(const std::string& dir, bool includeSubDirs) {
  win::TFindData entry;
  const auto walk = win::FindFirstFileA(JoinPath(dir, "*.*"), entry);
  for (bool found = walk != nullptr; found; found = win::FindNextFileA(*walk, entry)) {
    if (entry.FileName == "." || entry.FileName == "..") continue;
    const bool isFolder = (entry.FileAttributes & win::FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool isLink = (entry.FileAttributes & win::FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    const std::string path = JoinPath(dir, entry.FileName);
    if (isFolder && (includeSubDirs || isLink)) {
      if (!isLink) ScanFolder(path, includeSubDirs);
    } else if (IsUnitSource(entry.FileName) && !IsExcluded(path)) {
      FUnits.Add(path);
    }
  }
  if (win::GetLastError() != win::ERROR_NO_MORE_FILES)
    Warn(rtl::Format("The folder \"%s\" could not be read. %s",
                     {dir, win::SysErrorMessage(win::GetLastError())}));
}

}  // namespace mig
