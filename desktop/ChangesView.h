// Shows the outcome of a run: the changed files with their removed and added lines in red and green, the
// log, and the messages of the run.
#pragma once

#include <QTabWidget>
#include <vector>

#include "desktop/RunRecord.h"

class QListWidget;
class QPlainTextEdit;

namespace desktop {

class TChangesView : public QTabWidget {
 public:
  explicit TChangesView(QWidget* parent);

  void ShowRun(const TRunRecord& record);
  // Appends a line to the messages.
  void AddMessage(const QString& line);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ShowFile(int index);

  QListWidget* FFiles;
  QPlainTextEdit* FDiff;
  QPlainTextEdit* FLog;
  QPlainTextEdit* FMessages;
  std::vector<TRunRecord::TChange> FChanges;
};

}  // namespace desktop
