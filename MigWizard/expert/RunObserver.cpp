#include "MigWizard/expert/RunObserver.h"

#include <iterator>
#include <utility>

#include "report/Summary.h"

namespace mig {

TRunObserver::TRunObserver(TComponentReplacer& replacer) : FReplacer(replacer), FHooks(replacer) {
  replacer.OnWarning = [this](std::string_view message) {
    FWarnings.emplace_back(message);
    FHooks.Warn(message);
  };
  replacer.OnProgress = [this](const TRunProgress& progress) {
    const bool isConverted = progress.FileName.empty() && progress.Phase != TRunPhase::Restoring;
    if (isConverted && FCollector) {
      FinishCollection();
      if (FHooks.OnCollected) FHooks.OnCollected(FReport.Files);
    }
    FHooks.Report(progress);
  };
  replacer.OnReplacing = [this](TRunPhase phase, int done, int total) {
    FHasReplaced = FHasReplaced || phase == TRunPhase::Replacing;
    if (FHooks.OnReplacing) FHooks.OnReplacing(phase, done, total);
  };
  Clear();
}

TRunObserver::~TRunObserver() {
  FCollector.reset();
  static_cast<TRunHooks&>(FReplacer) = FHooks;
}

void TRunObserver::Clear() {
  FCollector.reset();
  if (const TOldNames* const names = FReplacer.OldNames()) Collect(*names);
  FReport = {};
  FWarnings.clear();
  FHasReplaced = false;
}

// The collector replaces the hooks of others, which are called after its own.
void TRunObserver::Collect(const TOldNames& names) {
  FCollector = std::make_unique<TFindingsCollector>(FReplacer, names);
  const TRunHooks collect = FReplacer;
  FReplacer.OnConverted = [this, collect](const std::string& fileName, const TFileConversion& conversion,
                                          bool isChanged) {
    collect.OnConverted(fileName, conversion, isChanged);
    if (FHooks.OnConverted) FHooks.OnConverted(fileName, conversion, isChanged);
  };
  FReplacer.OnMissingForm = [this, collect](const std::string& form) {
    collect.OnMissingForm(form);
    if (FHooks.OnMissingForm) FHooks.OnMissingForm(form);
  };
  FReplacer.OnOtherForm = [this, collect](const std::string& form, size_t objects) {
    collect.OnOtherForm(form, objects);
    if (FHooks.OnOtherForm) FHooks.OnOtherForm(form, objects);
  };
}

void TRunObserver::FinishCollection() {
  std::vector<TFileReport> files = FCollector->Finish();
  FReport.Files.insert(FReport.Files.end(), std::make_move_iterator(files.begin()),
                       std::make_move_iterator(files.end()));
}

std::vector<std::pair<std::string, std::string>> TRunObserver::Rows() {
  if (!FCollector) return {};
  FinishCollection();  // of a run that ended early
  if (FReplacer.Options().MakeBackup) FReport.Run.BackupFolder = FReplacer.Options().BackupDir;
  return report::SummaryRows(FReport);
}

}  // namespace mig
