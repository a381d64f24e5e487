#include "MigWizard/run/Restore.h"

#include "MigWizard/run/HeldFolders.h"
#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {

void TRestorePlan::Add(std::string_view undoFile) {
  rtl::TStringList list;
  list.LoadFromFile(undoFile);
  for (int i = 0; i < list.Count(); ++i) {
    const std::string_view name = list.Names(i);
    FLines.push_back({std::string(name), std::string(list.Values(name)), list[i]});
  }
}

bool TRestorePlan::Execute(const TProgress& onProgress, const TWarning& onWarning) const {
  const auto warn = [&](const std::string& message) {
    if (onWarning) onWarning(message);
  };
  if (FLines.empty()) warn("The undo file lists nothing.");
  for (const TRestoreLine& line : FLines) {
    if (rtl::FileExists(line.Backup)) continue;
    warn(rtl::Format("There is no backup for this line of the undo file, so nothing was restored: %s",
                     {line.Text}));
    return false;
  }
  const THeldFolders held;
  int done = 0;
  for (const TRestoreLine& line : FLines) {
    if (onProgress) onProgress(done, line);
    if (!win::CopyFileA(line.Backup, line.Original, false)) {
      warn(rtl::Format("\"%s\" could not be restored, nor were the files after it in the undo file. %s",
                       {line.Original, win::SysErrorMessage(win::GetLastError())}));
      return false;
    }
    ++done;
  }
  return done > 0;
}

}  // namespace mig
