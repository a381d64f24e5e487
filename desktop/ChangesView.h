// Shows the log and the messages of a run.
#pragma once

#include <QTabWidget>

class QPlainTextEdit;

namespace desktop {

class TChangesView : public QTabWidget {
 public:
  explicit TChangesView(QWidget* parent);

  // Shows the messages of a run that has ended, which may be empty. Its log comes later, by ShowLog.
  void ShowWarnings(const QString& warnings);
  void ShowLog(const QString& log);
  // Appends a line to the messages.
  void AddMessage(const QString& line);

 private:
  QPlainTextEdit* FLog;
  QPlainTextEdit* FMessages;
};

}  // namespace desktop
