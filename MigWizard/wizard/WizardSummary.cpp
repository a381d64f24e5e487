#include "MigWizard/wizard/WizardSummary.h"

#include <string_view>

#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/wizard/Wizard.h"
#include "rtl/text/SysUtils.h"

namespace mig {

std::string RestoreSummary(const TWizardForm& form) {
  return std::string(SMode) + SModeRestore + "\n\n" + rtl::Format(SUndoFile, {form.edUndoFile.Text()}) +
         "\n\n";
}

std::string ReplaceSummary(const TWizardForm& form) {
  const bool project = form.rbDestProject.Checked();
  const bool log = form.chWriteLog.Checked();
  struct TSummaryRow {
    bool Condition;
    std::string Text;
    std::string_view Then;
  };
  const TSummaryRow rows[] = {
      {true, SMode, ""},
      {true, rtl::Format(SModeReplace, {form.FOptions->SourceName}), "\n\n"},
      {true, SScanDest, ""},
      {project, SDestProject, "\n\n"},
      {!project, rtl::Format(SDestFolder, {form.cbDirectory.Text()}), "\n\n"},
      {form.chMakeBackup.Checked(), rtl::Format(SBackupDir, {form.GetBackupDir()}), "\n\n"},
      {log, SWriteLog, "\n\n"},
      {log && form.chViewLog.Checked(), SViewLog, "\n\n"},
      {project, SUnitsList, "\n"},
  };
  std::string summary;
  for (const TSummaryRow& row : rows) {
    if (row.Condition) summary.append(row.Text).append(row.Then);
  }
  for (int i = 0; project && i < form.lbModules.Count(); ++i) {
    if (form.lbModules.Checked(i)) summary.append(form.lbModules.Entry(i)).append("\n");
  }
  return summary;
}

}  // namespace mig
