// Shows the log and the messages of a run.
#pragma once

#include <QTabWidget>

class QPlainTextEdit;

namespace desktop {

class TRunRecord;

class TChangesView : public QTabWidget {
 public:
  explicit TChangesView(QWidget* parent);

  void ShowRun(const TRunRecord& record);
  // Appends a line to the messages.
  void AddMessage(const QString& line);

 private:
  QPlainTextEdit* FLog;
  QPlainTextEdit* FMessages;
};

}  // namespace desktop
