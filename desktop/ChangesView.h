// What a run has changed: the files, for each its lines in red and green, the log, and what the run had to
// say.
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
  // A line at the end of the messages.
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
