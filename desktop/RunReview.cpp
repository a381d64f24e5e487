#include "desktop/RunReview.h"

#include <QDateTime>
#include <QTabWidget>
#include <QtConcurrentRun>

#include "MigWizard/run/FileUtils.h"
#include "desktop/EarlierRun.h"
#include "desktop/FileDiff.h"
#include "desktop/FindingsPage.h"
#include "desktop/MigrationPage.h"
#include "desktop/QtText.h"
#include "desktop/ReviewPage.h"
#include "desktop/RunRecord.h"
#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"
#include "win/Diagnostics.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

// Returns the file with the marks of the run of an undo file.
std::string MarksOf(const std::string& undoFile) {
  return mig::JoinPath(rtl::ExtractFileDir(undoFile), kReviewMarksName);
}

}  // namespace

report::TReport ReportOf(const mig::TRunAccount& account, bool isPreview) {
  report::TReport report;
  report.Run.Version = KVA_VERSION;
  report.Run.Mode = account.Mode;
  report.Run.Scope = account.IsFolder ? "folder" : "project";
  report.Run.Path = win::ToHostName(account.Folder);
  report.Run.Folder = account.Folder;
  report.Run.Time = FromQt(QDateTime::currentDateTimeUtc().toString("yyyy-MM-ddTHH:mm:ssZ"));
  report.Run.IsPreview = isPreview;
  if (!account.BackupDir.empty()) report.Run.BackupFolder = win::ToHostName(account.BackupDir);
  report.Files = account.Files;
  return report;
}

TRunReview::TRunReview(host::THost& host, QTabWidget& pages) : FHost(host), FPages(pages) {
  QObject::connect(&FEarlier, &QFutureWatcherBase::finished, &FEarlier, [this] {
    const TEarlierRun run = FEarlier.result();
    if (run.Set) return ShowSet(run.Set, TReviewMarks(MarksOf(run.UndoFile)), {});
    rtl::Application().MessageBox(run.Failure, FromQt(FPages.window()->windowTitle()), rtl::MB_ICONERROR);
  });
}

// --- The migration of a project ---

void TRunReview::ShowProject() {
  if (FHost.ActiveProject() == nullptr) {
    if (FMigration) FPages.removeTab(FPages.indexOf(FMigration));  // kept for the next project
  } else if (!FMigration || FPages.indexOf(FMigration) < 0) {
    AddMigrationPage();
  }
  if (FMigration) FMigration->ShowProject();
}

void TRunReview::AddMigrationPage() {
  if (!FMigration) FMigration = new TMigrationPage(FHost, nullptr);
  FMigration->OnRun = OnRun;
  FMigration->OnPreviewing = OnPreviewing;
  FMigration->OnOpen = OnOpen;
  if (FPages.indexOf(FMigration) < 0) FPages.insertTab(0, FMigration, "Migration");
}

void TRunReview::ShowMigration() {
  if (FHost.ActiveProject() == nullptr) return;
  AddMigrationPage();
  FPages.setCurrentWidget(FMigration);
  FMigration->setFocus();
}

// --- The last run ---

void TRunReview::NoteAccount(const mig::TRunAccount& account) {
  FNoted = account;
}

void TRunReview::ShowRun(const TRunRecord& record) {
  const std::optional<mig::TRunAccount> account = std::exchange(FNoted, std::nullopt);
  std::vector<TReviewSet::TVersions> files;
  for (TRunRecord::TChange& change : record.Changes())
    files.push_back({std::move(change.FileName), std::move(change.Before), std::move(change.After)});
  // A restore has no account. Its changes are shown, and the findings of the run before it no longer apply.
  const bool hasBackups = account && !account->BackupDir.empty() && !files.empty();
  TReviewSetPtr set =
      std::make_shared<TReviewSet>(std::move(files), account ? account->Folder : std::string());
  TReviewMarks marks(hasBackups ? mig::JoinPath(account->BackupDir, kReviewMarksName) : std::string());
  for (const TReviewFile& file : set->Files()) marks.Set(TReviewMarks::TKind::Reviewed, file.Path, false);
  ShowSet(std::move(set), std::move(marks),
          account ? ReportOf(*account, /*isPreview=*/false) : report::TReport());
}

void TRunReview::ShowEarlierRun(const std::string& undoFile) {
  const std::string folder = TReviewMarks(MarksOf(undoFile)).Folder();
  FEarlier.setFuture(QtConcurrent::run([undoFile, folder] {
    TEarlierRun run{undoFile, nullptr, {}};
    try {
      run.Set = ReadEarlierRun(undoFile, folder);
    } catch (const std::exception& error) {
      run.Failure = error.what();
    }
    return run;
  }));
}

void TRunReview::ShowSet(TReviewSetPtr set, TReviewMarks marks, report::TReport report) {
  FSet = std::move(set);
  FMarks = std::make_unique<TReviewMarks>(std::move(marks));
  FMarks->SetFolder(FSet->Folder());
  FReport = std::move(report);
  if (FChanges || !FSet->Files().empty()) AddChangesPage();
  if (FFindings || !FReport.Files.empty()) AddFindingsPage();
  if (FMigration) FMigration->ShowProject();
  if (!FSet->Files().empty()) ShowChanges();
}

void TRunReview::AddChangesPage() {
  if (!FChanges) {
    FChanges = new TReviewPage(TReviewPage::TUse::Review, nullptr);
    FChanges->OnOpen = [this](const std::string& fileName, int line) {
      if (OnOpen) OnOpen(fileName, line, 1);
    };
    FChanges->OnTicked = [this] { StoreReviewed(); };
    FPages.addTab(FChanges, {});
  }
  FPages.setTabText(FPages.indexOf(FChanges), QString("Changes (%1)").arg(FSet->Files().size()));
  FChanges->Show(FSet, {});
  for (size_t i = 0; i < FSet->Files().size(); ++i) {
    if (FMarks->Has(TReviewMarks::TKind::Reviewed, FSet->Files()[i].Path))
      FChanges->Model().SetTicked(static_cast<int>(i), true);
  }
}

void TRunReview::AddFindingsPage() {
  if (!FFindings) {
    FFindings = new TFindingsPage(nullptr);
    FFindings->OnOpen = [this](const std::string& fileName, int line, int column) {
      OpenFinding(fileName, line, column);
    };
    FFindings->OnTicked = [this] { SaveMarks(); };
    FPages.addTab(FFindings, {});
  }
  FFindings->Show(FReport, *FMarks);
  FPages.setTabText(FPages.indexOf(FFindings), QString("What is left (%1)").arg(FFindings->Model().Count()));
}

void TRunReview::ShowChanges() {
  if (!FSet) return;
  if (!FChanges) AddChangesPage();
  FPages.setCurrentWidget(FChanges);
  FChanges->setFocus();
}

void TRunReview::ShowFindings() {
  if (!FMarks) return;
  if (!FFindings) AddFindingsPage();
  FPages.setCurrentWidget(FFindings);
  FFindings->setFocus();
}

// Findings have the lines of the file before the run.
void TRunReview::OpenFinding(const std::string& fileName, int line, int column) const {
  if (!OnOpen) return;
  const int index = FSet ? FSet->IndexOf(fileName) : -1;
  if (index < 0) return OnOpen(fileName, line, column);
  const TReviewFile& file = FSet->Files()[static_cast<size_t>(index)];
  OnOpen(fileName, TFileDiff(file.Before, file.After, file.IsForm).NewLineOf(line), 1);
}

void TRunReview::StoreReviewed() {
  for (size_t i = 0; i < FSet->Files().size(); ++i)
    FMarks->Set(TReviewMarks::TKind::Reviewed, FSet->Files()[i].Path,
                FChanges->Model().IsTicked(static_cast<int>(i)));
  SaveMarks();
}

void TRunReview::SaveMarks() const {
  if (!FMarks->Save())
    win::Diagnose(FMarks->FileName() + ": cannot be saved. " + win::SysErrorMessage(win::GetLastError()));
}

}  // namespace desktop
