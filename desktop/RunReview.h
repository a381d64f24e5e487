// The pages of a migration, beside the editors: the preview of a run, what the last run changed, and what it
// left to be done by hand. The ticks on the pages of the last run are kept beside its undo file.
//
//   TRunReview review(host, pages);
//   review.OnOpen = [](const std::string& fileName, int line, int column) { ... };
//   review.NoteAccount(account);   // during a run
//   review.ShowRun(record);        // after it
#pragma once

#include <QFutureWatcher>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "MigWizard/run/FindingsCollector.h"
#include "desktop/ReviewMarks.h"
#include "desktop/ReviewSet.h"
#include "report/Report.h"

namespace host {
class THost;
}

class QTabWidget;

namespace desktop {

class TFindingsPage;
class TMigrationPage;
class TReviewPage;
class TRunRecord;

class TRunReview {
 public:
  // The pages are added to `pages` as tabs, which the user may close. Neither argument is owned.
  TRunReview(host::THost& host, QTabWidget& pages);
  TRunReview(const TRunReview&) = delete;
  TRunReview& operator=(const TRunReview&) = delete;

  // Takes the account of the current run.
  void NoteAccount(const mig::TRunAccount& account);
  // Shows the changes of the run that has ended and, if there is an account of it, its findings.
  void ShowRun(const TRunRecord& record);

  // Shows the changes of the run with this undo file, a full Windows path, as soon as a task has read them. The ticks
  // are those that were saved beside it.
  void ShowEarlierRun(const std::string& undoFile);
  // Returns whether no such task runs.
  bool IsIdle() const { return FEarlier.isFinished(); }

  // Shows the host's active project on the page for its migration, or removes the page if none is open.
  void ShowProject();

  // Bring the page to the front, and open it if the user has closed it.
  void ShowMigration();
  void ShowChanges();
  void ShowFindings();
  // Called when the user opens a file, a full Windows path, at a line and a column from 1 of its present
  // version.
  std::function<void(const std::string& fileName, int line, int column)> OnOpen;
  // Runs an event of the user, and shows its exceptions and the outcome of a run.
  std::function<void(const std::function<void()>& event)> OnRun;
  // Called before each file of a preview. An exception stops it.
  std::function<void(const mig::TRunProgress& progress)> OnPreviewing;

 private:
  // The changes of an earlier run, or why they cannot be shown.
  struct TEarlierRun {
    std::string UndoFile;
    TReviewSetPtr Set;
    std::string Failure;
  };
  void ShowSet(TReviewSetPtr set, TReviewMarks marks, report::TReport report);
  void AddMigrationPage();
  void AddChangesPage();
  void AddFindingsPage();
  void OpenFinding(const std::string& fileName, int line, int column) const;
  void StoreReviewed();
  void SaveMarks() const;

  host::THost& FHost;
  QTabWidget& FPages;
  std::optional<mig::TRunAccount> FNoted;  // of the current run
  std::unique_ptr<TReviewMarks> FMarks;
  TReviewSetPtr FSet;
  report::TReport FReport;
  QPointer<TMigrationPage> FMigration;
  QPointer<TReviewPage> FChanges;
  QPointer<TFindingsPage> FFindings;
  QFutureWatcher<TEarlierRun> FEarlier;
};

// Returns the report of a run.
report::TReport ReportOf(const mig::TRunAccount& account, bool isPreview);

}  // namespace desktop
