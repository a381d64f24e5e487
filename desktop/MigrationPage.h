// The page from which a project is migrated: which components it uses, a preview of the changes with a tick
// for each, and the conversion of the ticked ones.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "desktop/Census.h"
#include "desktop/DryRun.h"
#include "desktop/ReviewMarks.h"

class QLabel;
class QPushButton;
class QTabWidget;

namespace desktop {

class TFindingsPage;
class TReviewPage;

class TMigrationPage : public QWidget {
 public:
  // The host must outlive the page.
  TMigrationPage(host::THost& host, QWidget* parent);

  // Shows the host's active project, and counts its objects again. A preview is forgotten.
  void ShowProject();
  // Runs the project dry and shows the result. Raises the exceptions of TDryRun::Preview.
  void Preview(TFamily family);
  // Converts the ticked changes, after a question. Raises the exceptions of TDryRun::Convert.
  void Convert();
  bool IsIdle() const;

  // Runs an event of the user, and shows its exceptions and the outcome of a run.
  std::function<void(const std::function<void()>& event)> OnRun;
  // Called before each file of a preview. An exception stops it.
  std::function<void(const mig::TRunProgress& progress)> OnPreviewing;
  // Called when the user opens a file, a full Windows path, at a line and a column from 1.
  std::function<void(const std::string& fileName, int line, int column)> OnOpen;

 private:
  QWidget* NewHead();
  QPushButton* NewButton(const char* name, const char* text, const std::function<void()>& click);
  void ShowCounts(const TCensus::TCounts& counts);
  void ShowPreview();
  void UpdateSelection();
  void ReloadFiles();
  bool MaySave() const;
  bool Confirm(int files);

  host::THost& FHost;
  TCensus FCensus;
  TDryRun FDryRun;
  TReviewMarks FMarks{""};
  std::string FProject;  // the project that the page shows
  QLabel* FTitle;
  QLabel* FCounts;
  QLabel* FNote;
  QPushButton* FPreviewBDE;
  QPushButton* FPreviewIBX;
  QPushButton* FConvert;
  QTabWidget* FResult;
  TReviewPage* FFiles;
  TFindingsPage* FFindings;
};

}  // namespace desktop
