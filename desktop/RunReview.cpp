#include "desktop/RunReview.h"

#include <QTabWidget>
#include <QtConcurrentRun>
#include <utility>

#include "desktop/FileDiff.h"
#include "desktop/FindingsPage.h"
#include "desktop/MigrationPage.h"
#include "desktop/QtText.h"
#include "desktop/ReviewPage.h"
#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"
#include "win/Diagnostics.h"
#include "win/FileApi.h"

namespace desktop {

TRunReview::TRunReview(host::THost& host, QTabWidget& pages) : FHost(host), FPages(pages) {
  QObject::connect(&FReading, &QFutureWatcherBase::finished, &FReading, [this] {
    FIsReading = false;
    ShowRead(FReading.result());
  });
  QObject::connect(&FLooking, &QFutureWatcherBase::finished, &FLooking, [this] {
    FIsLooking = false;
    ShowFound(FLooking.result());
  });
  QObject::connect(&FOpening, &QFutureWatcherBase::finished, &FOpening, [this] {
    FIsOpening = false;
    const TPlace place = FOpening.result();
    if (OnOpen) OnOpen(place.FileName, place.Line, place.Column);
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
  LookForFindings();
}

void TRunReview::LookForFindings() {
  const host::TProject* const project = FHost.ActiveProject();
  const std::string fileName = project == nullptr ? std::string() : project->FileName();
  if (fileName == FLookedFor) return;
  FLookedFor = fileName;
  if (FRun.Set) return;
  delete FFindings.data();  // of the project before
  FRun = {};
  if (fileName.empty()) return;
  FIsLooking = true;
  FLooking.setFuture(QtConcurrent::run(ReadLastFindings, rtl::ExtractFileDir(fileName)));
}

void TRunReview::ShowFound(const TReviewedRun& run) {
  if (FRun.Set || FIsReading || !run.Report || FHost.ActiveProject() == nullptr) return;
  FRun = run;
  ShowReport();
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

void TRunReview::NoteResult(const mig::TRunResult& result) {
  FNoted = ReportOf(result, {result.Files.begin(), result.Files.end()}, /*isPreview=*/false);
  FNotedBackupDir = result.BackupDir;
}

// A task that has not ended is no longer of interest.
void TRunReview::Read(const QFuture<TReviewedRun>& run) {
  FIsReading = true;
  FReading.setFuture(run);
}

void TRunReview::ShowRun(TRunRecord record) {
  Read(QtConcurrent::run([record = std::move(record), backupDir = std::exchange(FNotedBackupDir, {}),
                          report = std::exchange(FNoted, nullptr)]() mutable {
    return ReadRun(std::move(record), backupDir, report);
  }));
}

void TRunReview::ShowEarlierRun(const std::string& undoFile) {
  Read(QtConcurrent::run(ReadEarlierRun, undoFile));
}

void TRunReview::ShowRead(const TReviewedRun& run) {
  if (!run.Failure.empty()) {
    rtl::Application().MessageBox(run.Failure, FromQt(FPages.window()->windowTitle()), rtl::MB_ICONERROR);
    return;
  }
  if (!run.IsEarlier && OnLog) OnLog(run.Log);
  if (run.Set->Files().empty() && !run.Report && !run.IsEarlier)
    return;  // a run that was stopped, for example
  FRun = run;
  if (!run.Warning.empty()) win::Diagnose(run.Warning);
  if (FChanges || !FRun.Set->Files().empty()) AddChangesPage();
  ShowReport();
  if (FMigration) FMigration->ShowProject();
  if (!FRun.Set->Files().empty()) ShowChanges();
}

// After a restore, the findings of the run before it no longer apply.
void TRunReview::ShowReport() {
  if (FRun.Report || FRun.IsEarlier) {
    AddFindingsPage();
  } else if (FFindings) {
    delete FFindings.data();
  }
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
  FPages.setTabText(FPages.indexOf(FChanges), QString("Changes (%1)").arg(FRun.Set->Files().size()));
  FChanges->Show(FRun.Set, {});
  for (size_t i = 0; i < FRun.Set->Files().size(); ++i) {
    if (FRun.Marks->Has(TReviewMarks::TKind::Reviewed, FRun.Set->Files()[i].Path))
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
  FFindings->Show(FRun.Report, *FRun.Marks);
  FPages.setTabText(
      FPages.indexOf(FFindings),
      FRun.Report ? QString("What is left (%1)").arg(FFindings->Model().Count()) : "What is left");
}

void TRunReview::ShowChanges() {
  if (FIsReading) return;  // the result is shown as soon as it is read
  if (!FRun.Set && !FRun.UndoFile.empty()) ShowEarlierRun(FRun.UndoFile);
  if (!FRun.Set) return;
  if (!FChanges) AddChangesPage();
  FPages.setCurrentWidget(FChanges);
  FChanges->setFocus();
}

void TRunReview::ShowFindings() {
  if (!FRun.Report && !FRun.IsEarlier) return;
  if (!FFindings) AddFindingsPage();
  FPages.setCurrentWidget(FFindings);
  FFindings->setFocus();
}

// Findings have the lines of the file before the run.
void TRunReview::OpenFinding(const std::string& fileName, int line, int column) {
  FIsOpening = true;
  FOpening.setFuture(QtConcurrent::run([shown = FRun.Set, undoFile = FRun.UndoFile,
                                        place = TPlace{fileName, line, column}] {
    const TReviewSetPtr set = shown ? shown : ReadChange(undoFile, place.FileName);
    const int index = set ? set->IndexOf(place.FileName) : -1;
    if (index < 0) return place;
    const TReviewFile& file = set->Files()[static_cast<size_t>(index)];
    return TPlace{place.FileName, TFileDiff(file.Before, file.After, file.IsForm).NewLineOf(place.Line), 1};
  }));
}

void TRunReview::StoreReviewed() {
  for (size_t i = 0; i < FRun.Set->Files().size(); ++i)
    FRun.Marks->Set(TReviewMarks::TKind::Reviewed, FRun.Set->Files()[i].Path,
                    FChanges->Model().IsTicked(static_cast<int>(i)));
  SaveMarks();
}

void TRunReview::SaveMarks() const {
  if (!FRun.Marks->Save())
    win::Diagnose(FRun.Marks->FileName() + ": cannot be saved. " + win::SysErrorMessage(win::GetLastError()));
}

}  // namespace desktop
