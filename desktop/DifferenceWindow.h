// Shows the differences between two versions of one file, side by side, in a window of its own.
//
//   TDifferenceWindow("Main.pas", "in the editor", "on the disk", compare, parent).exec();
#pragma once

#include <QDialog>
#include <QFutureWatcher>
#include <functional>
#include <memory>
#include <string>

#include "desktop/FileDiff.h"

namespace desktop {

class TDiffView;

class TDifferenceWindow : public QDialog {
 public:
  // `fileName` is shown; `left` and `right` tell where the two versions are. `compare` returns the
  // differences, from left to right; a task calls it. The text of its exception is shown in place of the
  // differences.
  TDifferenceWindow(const QString& fileName, const QString& left, const QString& right,
                    const std::function<std::shared_ptr<const TFileDiff>()>& compare, QWidget* parent);

  // Returns whether the result of the comparison is shown.
  bool IsIdle() const { return !FIsComparing; }

 private:
  struct TResult {
    TDiffPage Page;
    QString Failure;
  };
  static TResult Compare(const std::function<std::shared_ptr<const TFileDiff>()>& compare);
  void ShowResult(TResult result);

  TDiffView* FView;
  QFutureWatcher<TResult> FTask;
  bool FIsComparing = true;  // until the result is shown, which is after the task has finished
};

}  // namespace desktop
