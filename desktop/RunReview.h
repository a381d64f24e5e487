// The pages of a migration, beside the editors: the preview of a run, what the last run changed, and what it
// left to be done by hand. The ticks on the pages of the last run are kept beside its undo file.
//
//   TRunReview review(host, pages);
//   review.OnOpen = [](const std::string& fileName, int line, int column) { ... };
//   review.NoteResult(result);          // during a run
//   review.ShowRun(std::move(record));   // after it
//
// Tasks read and compare the files, so that the window never waits for them.
#pragma once

#include <QFutureWatcher>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>

#include "desktop/ReviewedRun.h"

namespace host {
class THost;
}

class QTabWidget;

namespace desktop {

class TFindingsPage;
class TMigrationPage;
class TReviewPage;

class TRunReview {
 public:
  // The pages are added to `pages` as tabs, which the user may close. Neither argument is owned.
  TRunReview(host::THost& host, QTabWidget& pages);
  TRunReview(const TRunReview&) = delete;
  TRunReview& operator=(const TRunReview&) = delete;

  // Takes the result of the current run.
  void NoteResult(const mig::TRunResult& result);
  // Shows the changes of the run that has ended and, if its result is known, its findings, as soon as a task
  // has read the files.
  void ShowRun(TRunRecord record);

  // The same for the run with this undo file, a full Windows path. The findings and the ticks are those that
  // were saved beside it.
  void ShowEarlierRun(const std::string& undoFile);
  // Returns whether no such task runs, and no finding is being opened.
  bool IsIdle() const { return !FIsReading && !FIsLooking && !FIsOpening; }

  // Shows the host's active project on the page for its migration, or removes the page if none is open.
  // Unless a run is shown, also shows what the project's last run left, as soon as a task has read it.
  void ShowProject();

  // Bring the page to the front, and open it if the user has closed it.
  void ShowMigration();
  void ShowChanges();
  void ShowFindings();

  // Called with the log of the run that ShowRun shows; UTF-8, and empty if none was written.
  std::function<void(const std::string& log)> OnLog;
  // Called when the user opens a file, a full Windows path, at a line and a column from 1 of its present
  // version.
  std::function<void(const std::string& fileName, int line, int column)> OnOpen;
  // Runs an event of the user, and shows its exceptions and the outcome of a run.
  std::function<void(const std::function<void()>& event)> OnRun;
  // Called before each file of a preview. An exception stops it.
  std::function<void(const mig::TRunProgress& progress)> OnPreviewing;

 private:
  // A place in the present version of a file.
  struct TPlace {
    std::string FileName;
    int Line = 1, Column = 1;
  };
  void LookForFindings();
  void ShowFound(const TReviewedRun& run);
  void Read(const QFuture<TReviewedRun>& run);
  void ShowRead(const TReviewedRun& run);
  void ShowReport();
  void AddMigrationPage();
  void AddChangesPage();
  void AddFindingsPage();
  void OpenFinding(const std::string& fileName, int line, int column);
  void StoreReviewed();
  void SaveMarks() const;

  host::THost& FHost;
  QTabWidget& FPages;
  TReportPtr FNoted;            // of the current run; null until it has converted its files
  std::string FNotedBackupDir;  // full Windows path; empty without backups
  TReviewedRun FRun;            // the run on the pages
  QPointer<TMigrationPage> FMigration;
  QPointer<TReviewPage> FChanges;
  QPointer<TFindingsPage> FFindings;
  QFutureWatcher<TReviewedRun> FReading;
  bool FIsReading = false;
  QFutureWatcher<TReviewedRun> FLooking;  // for the findings of the last run
  bool FIsLooking = false;
  std::string FLookedFor;  // the project whose last run was looked for
  QFutureWatcher<TPlace> FOpening;
  bool FIsOpening = false;
};

}  // namespace desktop
