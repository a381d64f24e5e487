// A dry run over the active project of a host, and the run of the changes that the user selected in it.
//
//   TDryRun dryRun(host);
//   dryRun.Preview(TFamily::BDE);
//   page.Show(dryRun.Files(), dryRun.Rows());
//   dryRun.Convert(page.Model(), [] { ReloadEditors(); });
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/Census.h"
#include "desktop/ReviewModel.h"
#include "desktop/ReviewSet.h"
#include "desktop/RunReport.h"
#include "host/Host.h"
#include "target/KVAReplacer.h"

namespace desktop {

class TDryRun {
 public:
  // The host must outlive the object.
  explicit TDryRun(host::THost& host);

  // Converts all units of the active project in memory; writes nothing. Files that cannot be converted are
  // left out and listed in LeftOut. Raises the exceptions of mig::TComponentReplacer::Preview; there is no
  // preview then.
  void Preview(TFamily family);
  bool HasPreview() const { return FPlan != nullptr; }
  // Forgets the preview.
  void Clear();

  // The result of the preview: the files that would change, their rows in the tree, and what would be left.
  const TReviewSetPtr& Files() const { return FFiles; }
  const std::vector<TReviewRows>& Rows() const { return FRows; }
  const TReportPtr& Report() const { return FReport; }
  const std::vector<mig::TLeftOut>& LeftOut() const { return Replacer().LeftOut(); }

  // Returns where the backups of Convert go: the first default backup folder that undoes no earlier run.
  std::string BackupDir() const;
  // Runs the replacement of the files and edits that have a tick in `ticks`, a model that shows Files and
  // Rows. Everything else keeps every byte. Calls `onReplaced` if the run succeeded, and tells the outcome.
  // Raises the exceptions of mig::ReplaceInteractively.
  void Convert(const TReviewModel& ticks, const std::function<void()>& onReplaced);

  // Called before each file of a preview. An exception stops it.
  std::function<void(const mig::TRunProgress& progress)> OnPreviewing;

 private:
  target::TKVAComponentReplacer& Replacer() const {
    return FFamily == TFamily::BDE ? FMigration.BDE() : FMigration.IBX();
  }
  void SetOptions();
  void ListRows();
  void Select(const TReviewModel& ticks, mig::TRunSelection& selection) const;

  host::THost& FHost;
  mutable target::TKVAMigration FMigration;
  TFamily FFamily = TFamily::BDE;
  std::shared_ptr<const mig::TRunPlan> FPlan;
  std::vector<const mig::TPlannedFile*> FPlanned;  // of the plan, for each of FFiles
  TReviewSetPtr FFiles;
  std::vector<TReviewRows> FRows;
  TReportPtr FReport;
};

}  // namespace desktop
