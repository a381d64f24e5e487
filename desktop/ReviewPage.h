// The page of changed files: the tree of files beside the differences of one of them. It serves the review
// after a run, where a tick means "reviewed", and the preview before one, where it means "convert".
//
//   auto* const page = new TReviewPage(TReviewPage::TUse::Review, nullptr);
//   page->OnOpen = [](const std::string& fileName, int line) { ... };
//   page->Show(set, {});
//
// Files are compared by tasks, so that the window never waits for them.
#pragma once

#include <QFutureWatcher>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "desktop/FileDiff.h"
#include "desktop/ReviewModel.h"

class QAction;
class QLabel;
class QLineEdit;
class QSortFilterProxyModel;
class QToolBar;
class QTreeView;

namespace desktop {

class TDiffView;

class TReviewPage : public QWidget {
 public:
  enum class TUse { Review, Preview };
  TReviewPage(TUse use, QWidget* parent);
  ~TReviewPage() override;

  // Shows the files and selects the first. `rows` are those of TReviewModel::Show.
  void Show(TReviewSetPtr set, const std::vector<TReviewRows>& rows);
  TReviewModel& Model() const { return *FModel; }

  // Moves to the next change (`step` 1) or the previous one (-1), over all files that the filter shows.
  void GoToChange(int step);
  // Selects a file and shows its changes.
  void SelectFile(int file);
  // Returns the line of the old version at the cursor, from 1.
  int OldLine() const;
  // Returns whether the differences of the selected file are shown and all files are counted.
  bool IsIdle() const;

  // Called when the user opens a file, a full Windows path, at a line of its new version, from 1.
  std::function<void(const std::string& fileName, int line)> OnOpen;
  // Called after ticks have changed.
  std::function<void()> OnTicked;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct TCounts {
    int File;
    int Added, Removed;
  };
  struct TResult {
    std::shared_ptr<const TFileDiff> Diff;
    TDiffPage Page;
  };

  QWidget* NewFileSide();
  QToolBar* NewBar();
  QWidget* NewDiffSide();
  QAction* AddAction(QToolBar& bar, const char* name, const QString& text, const QKeySequence& keys,
                     const std::function<void()>& use);
  bool IgnoresSpace(const TReviewFile& file) const;
  void Count();
  void ShowSelected();
  void ShowDiff(TResult result);
  void ListShown();
  void ShowStatus();
  void SetReviewedAndGoOn();
  int NextFile(int step) const;
  void OpenCurrent();
  void CopyPatch() const;
  void SavePatch();
  void SaveSettings() const;

  const TUse FUse;
  TReviewModel* FModel;
  QSortFilterProxyModel* FFilter;
  QLineEdit* FFilterField;
  QTreeView* FTree;
  QLabel* FStatus;
  QLabel* FTitle;
  TDiffView* FView;
  QAction* FSideBySide = nullptr;
  QAction* FWholeFile = nullptr;
  QAction* FIgnoreSpace = nullptr;
  std::vector<int> FShown;  // the files that the filter shows, in the order of the tree
  QFutureWatcher<std::vector<TCounts>> FCounting;
  QFutureWatcher<TResult> FComparing;  // the selected file
  // Until the results are shown, which is after the tasks have finished.
  bool FIsCounting = false, FIsComparing = false;
  int FFile = -1;        // the selected one
  int FEdit = -1;        // of the file, or -1
  bool FAtLast = false;  // whether the next page is shown from its last change
  std::vector<TReviewRows> FRows;
};

}  // namespace desktop
