// A dry run over the active project of a host, and the run of what the user selected from it.
//
//   TDryRun dryRun(host);
//   dryRun.Preview(TFamily::BDE);
//   page.Show(dryRun.Files(), dryRun.Rows());
//   const bool replaced = dryRun.Convert(page.Model());
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MigWizard/run/FindingsCollector.h"
#include "desktop/Census.h"
#include "desktop/ReviewModel.h"
#include "desktop/ReviewSet.h"
#include "host/Host.h"
#include "target/KVAReplacer.h"

namespace desktop {

class TDryRun {
 public:
  // The host must outlive the object.
  explicit TDryRun(host::THost& host);

  // Converts all units of the active project in memory; writes nothing. Files that cannot be converted are left
  // out and listed in LeftOut. Raises what mig::TComponentReplacer::Preview raises; there is no preview then.
  void Preview(TFamily family);
  bool HasPreview() const { return FPlan.has_value(); }
  // Forgets the preview.
  void Clear();

  // The result of the preview: the files that would change, their rows in the tree, and what would be left.
  const TReviewSetPtr& Files() const { return FFiles; }
  const std::vector<TReviewRows>& Rows() const { return FRows; }
  const mig::TRunAccount& Account() const { return FAccount; }
  const std::vector<mig::TLeftOut>& LeftOut() const { return Replacer().LeftOut(); }

  // Runs the replacement of the files and edits that have a tick in `ticks`, a model that shows Files and Rows.
  // Everything else keeps every byte. Backups go to the first default backup folder without the way back of
  // an earlier run. Returns and raises what mig::TComponentReplacer::Replace does. The preview remains if the
  // run raises.
  [[nodiscard]] bool Convert(const TReviewModel& ticks);

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
  std::array<mig::TOldNames, 2> FOldNames;  // of the replacers, by TFamily
  TFamily FFamily = TFamily::BDE;
  std::optional<mig::TRunPlan> FPlan;
  std::vector<const mig::TPlannedFile*> FPlanned;  // of the plan, for each of FFiles
  TReviewSetPtr FFiles;
  std::vector<TReviewRows> FRows;
  mig::TRunAccount FAccount;
};

}  // namespace desktop
