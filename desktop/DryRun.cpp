#include "desktop/DryRun.h"

#include <unordered_map>
#include <utility>

#include "MigWizard/expert/GuidedRun.h"
#include "MigWizard/run/Finally.h"
#include "MigWizard/run/UndoState.h"
#include "desktop/QtText.h"
#include "host/ProjectChoice.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "toolsapi/HostRuntime.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace desktop {

namespace {

QString TitleOf(const mig::TListedEdit& edit) {
  const QString before = ToQt(edit.Before).simplified();
  const QString after = ToQt(edit.After).simplified();
  const QString change = before.isEmpty() ? QString("adds %1").arg(after)
                                          : QString("%1 %2 %3").arg(before, QChar(0x2192), after);
  return edit.Object.empty() ? QString("%1: %2").arg(edit.Line).arg(change)
                             : QString("%1: %2").arg(ToQt(edit.Object), change);
}

}  // namespace

TDryRun::TDryRun(host::THost& host) : FHost(host), FMigration(target::TCatalogue::BuiltIn()) {}

void TDryRun::Clear() {
  FPlan.reset();
  FPlanned.clear();
  FFiles.reset();
  FRows.clear();
  FReport.reset();
}

void TDryRun::SetOptions() {
  const host::TProject& project = *FHost.ActiveProject();
  mig::TReplaceOptions& options = FMigration.Options();
  rtl::TStringList units;
  for (const std::string& unit : host::SelectUnits(project, {})) units.Add(unit);
  options.Dest = mig::sdProject;
  options.UnitNames = units.Text();
  options.Policy.Strict = true;
  options.Policy.KeepGoing = true;
  options.MakeBackup = false;
  options.WriteLog = false;
}

void TDryRun::Preview(TFamily family) {
  Clear();
  FFamily = family;
  SetOptions();
  target::TKVAComponentReplacer& replacer = Replacer();
  mig::TFindingsCollector collector(replacer, *replacer.OldNames());
  std::vector<TReviewSet::TVersions> files;
  replacer.OnConverted = [&files, collect = replacer.OnConverted](const std::string& fileName,
                                                                  const mig::TFileConversion& conversion,
                                                                  bool isChanged) {
    collect(fileName, conversion, isChanged);
    if (!isChanged) return;
    files.push_back(
        {fileName, rtl::ReadFile(fileName), std::string(conversion.Mark).append(conversion.Bytes)});
  };
  replacer.OnProgress = OnPreviewing;
  replacer.OnWarning = nullptr;
  replacer.SetSelection(nullptr);
  auto plan = std::make_shared<mig::TRunPlan>();
  replacer.Preview(plan.get());
  const std::string folder = rtl::ExtractFileDir(FHost.ActiveProject()->FileName());
  FReport = ReportOf({family == TFamily::BDE ? "bde" : "ibx", false, folder, {}, {}}, collector.Finish(),
                     /*isPreview=*/true);
  FFiles = std::make_shared<TReviewSet>(std::move(files), folder);
  FPlan = std::move(plan);
  ListRows();
}

void TDryRun::ListRows() {
  std::unordered_map<std::string, const mig::TPlannedFile*> planned;
  for (const mig::TPlannedFile& file : FPlan->Files()) planned[win::UpperFileName(file.FileName)] = &file;
  for (const TReviewFile& file : FFiles->Files()) {
    FPlanned.push_back(planned[win::UpperFileName(file.FileName)]);
    TReviewRows& rows = FRows.emplace_back();
    if (FPlanned.back() == nullptr) continue;
    rows.Group = FPlanned.back()->Group + 1;
    for (const mig::TListedEdit& edit : FPlanned.back()->Edits)
      rows.Edits.push_back({TitleOf(edit), static_cast<int>(edit.Line)});
  }
}

void TDryRun::Select(const TReviewModel& ticks, mig::TRunSelection& selection) const {
  for (size_t i = 0; i < FPlanned.size(); ++i) {
    const auto file = static_cast<int>(i);
    const mig::TPlannedFile* const planned = FPlanned[i];
    if (planned == nullptr || ticks.IsTicked(file)) continue;
    bool hasSome = false;
    for (size_t j = 0; j < planned->Edits.size(); ++j)
      hasSome = hasSome || ticks.IsTicked(file, static_cast<int>(j));
    if (!hasSome) {
      selection.LeaveOut(planned->FileName);
      continue;
    }
    for (size_t j = 0; j < planned->Edits.size(); ++j) {
      if (!ticks.IsTicked(file, static_cast<int>(j)))
        selection.LeaveOut(planned->FileName, planned->Edits[j].Place);
    }
  }
}

std::string TDryRun::BackupDir() const {
  return mig::ChooseBackupDir(FReport->Run.Folder);
}

void TDryRun::Convert(const TReviewModel& ticks, const std::function<void()>& onReplaced) {
  const auto plan = FPlan;  // a restore right after the run closes the project, and forgets the preview
  mig::TRunSelection selection(*plan);
  Select(ticks, selection);
  target::TKVAComponentReplacer& replacer = Replacer();
  mig::TReplaceOptions& options = FMigration.Options();
  options.MakeBackup = true;
  options.WriteLog = true;
  options.BackupDir = BackupDir();
  const std::string title = options.GetTitle();
  replacer.OnProgress = [&](const mig::TRunProgress& progress) {
    FHost.NotifyRun({title, progress.FileName, replacer.LogFileName(), progress.Phase, progress.PhaseDone,
                     progress.PhaseTotal});
  };
  replacer.OnReplacing = [&](mig::TRunPhase phase, int done, int total) {
    FHost.NotifyRun({title, {}, replacer.LogFileName(), phase, done, total});
  };
  replacer.OnCollected = [&, run = FReport->Run](const std::vector<mig::TFileReport>& files) {
    FHost.NotifyRunConverted({run.Mode, false, run.Folder, options.BackupDir, files});
  };
  replacer.OnWarning = [this](std::string_view message) { FHost.NotifyRunWarning(message); };
  replacer.SetSelection(&selection);
  const mig::TFinally reset([&replacer] {
    replacer.SetSelection(nullptr);
    static_cast<mig::TRunHooks&>(replacer) = {};
  });
  mig::ReplaceInteractively(replacer, onReplaced);
}

}  // namespace desktop
