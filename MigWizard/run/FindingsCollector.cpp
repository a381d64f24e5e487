#include "MigWizard/run/FindingsCollector.h"

#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace mig {

TFindingsCollector::TFindingsCollector(TComponentReplacer& replacer, const TOldNames& names,
                                       TFindingDetail detail)
    : FReplacer(replacer), FDetail(detail), FFindings(replacer.Classes(), names) {
  replacer.CollectFindings(names, detail);
  replacer.OnConverted = [this](const std::string& fileName, const TFileConversion& conversion,
                                bool isChanged) { AddFile(fileName, conversion, isChanged); };
  replacer.OnMissingForm = [this](const std::string& form) { FFindings.AddMissingForm(form); };
  replacer.OnOtherForm = [this](const std::string& form, size_t objects) {
    FFindings.AddOtherForm(form, objects);
  };
}

TFindingsCollector::~TFindingsCollector() {
  FReplacer.OnConverted = nullptr;
  FReplacer.OnMissingForm = nullptr;
  FReplacer.OnOtherForm = nullptr;
}

void TFindingsCollector::AddFile(const std::string& fileName, const TFileConversion& conversion,
                                 bool isChanged) {
  // Two units can name the same form, whose findings are added only once.
  if (!FKnown.insert(win::UpperFileName(fileName)).second) return;
  if (FDetail == TFindingDetail::Counts) return FFindings.AddFile(fileName, conversion, isChanged, {});
  const TReplaceOptions& options = FReplacer.Options();
  std::string backup;
  if (isChanged && options.MakeBackup) {
    const std::string path = options.Dest == sdFolder
                                 ? rtl::ExtractRelativePath(JoinPath(options.Directory, ""), fileName)
                                 : rtl::ExtractFileName(fileName);
    backup = BackupFileName(JoinPath(options.BackupDir, path));
  }
  // Use the name as on disk, because resource directives may spell it differently.
  FFindings.AddFile(win::FileSystem().GetLongPathNameA(fileName), conversion, isChanged, backup);
}

std::vector<TFileReport> TFindingsCollector::Finish() {
  FKnown.clear();
  return FFindings.Finish();
}

}  // namespace mig
