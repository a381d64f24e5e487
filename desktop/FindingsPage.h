// The page of the work that a run left to do by hand: a table of findings with filter, sorting and groups,
// and the advice for the selected one.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "desktop/FindingsModel.h"
#include "desktop/RunReport.h"

class QAction;
class QComboBox;
class QLabel;
class QPushButton;
class QTreeView;

namespace desktop {

class TFindingsFilter;

class TFindingsPage : public QWidget {
 public:
  explicit TFindingsPage(QWidget* parent);
  ~TFindingsPage() override;

  // Shows the findings of a run. Null means that they are not known, which the page says. `marks` is not
  // owned and must outlive its use.
  void Show(TReportPtr report, TReviewMarks& marks);
  TFindingsModel& Model() const { return *FModel; }
  // Writes the report in the format of the extension of `fileName`, a host path. Returns an empty text, or a
  // message.
  QString Export(const QString& fileName) const;

  // Called when the user opens a finding: a full Windows path, line and column from 1, as before the run.
  std::function<void(const std::string& fileName, int line, int column)> OnOpen;
  // Called after ticks have changed.
  std::function<void()> OnTicked;

 private:
  QWidget* NewBar();
  void ShowStatus();
  void ShowAdvice();
  void OpenCurrent();
  void AskExport();

  TFindingsModel* FModel;
  TFindingsFilter* FFilter;
  QTreeView* FTable;
  QLabel* FStatus;
  QLabel* FAdvice;
  QPushButton* FExport = nullptr;
  TReportPtr FReport;
};

}  // namespace desktop
