// The review of the last run: pages beside the editors with what it changed and what it left to be done by
// hand. The ticks on both pages are kept beside the undo file of the run.
//
//   TRunReview review(host, pages, menu);
//   review.OnOpen = [](const std::string& fileName, int line, int column) { ... };
//   review.NoteAccount(account);   // during a run
//   review.ShowRun(record);        // after it
#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "MigWizard/run/FindingsCollector.h"
#include "desktop/ReviewMarks.h"
#include "desktop/ReviewSet.h"
#include "report/Report.h"

class QTabWidget;

namespace desktop {

class TFindingsPage;
class TReviewPage;
class TRunRecord;

class TRunReview {
 public:
  // The pages are added to `pages` as tabs, which the user may close. Not owned.
  explicit TRunReview(QTabWidget& pages);
  TRunReview(const TRunReview&) = delete;
  TRunReview& operator=(const TRunReview&) = delete;

  // Takes the account of the current run.
  void NoteAccount(const mig::TRunAccount& account);
  // Shows the changes of the run that has ended and, if there is an account of it, its findings.
  void ShowRun(const TRunRecord& record);

  // Bring the page to the front, and open it if the user has closed it.
  void ShowChanges();
  void ShowFindings();
  // Called when the user opens a file, a full Windows path, at a line and a column from 1 of its present
  // version.
  std::function<void(const std::string& fileName, int line, int column)> OnOpen;

 private:
  void AddChangesPage();
  void AddFindingsPage();
  void OpenFinding(const std::string& fileName, int line, int column) const;
  void StoreReviewed();
  void SaveMarks() const;

  QTabWidget& FPages;
  std::optional<mig::TRunAccount> FNoted;  // of the current run
  std::unique_ptr<TReviewMarks> FMarks;
  TReviewSetPtr FSet;
  report::TReport FReport;
  QPointer<TReviewPage> FChanges;
  QPointer<TFindingsPage> FFindings;
};

// Returns the report of a run.
report::TReport ReportOf(const mig::TRunAccount& account, bool isPreview);

}  // namespace desktop
