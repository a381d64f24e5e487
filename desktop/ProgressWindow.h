// Shows the progress of a run. The run is one long call; the window stays responsive because it processes
// its events between two files.
#pragma once

#include <QElapsedTimer>
#include <memory>
#include <vector>

#include "MigWizard/run/Replacer.h"

class QDialog;
class QLabel;
class QProgressBar;
class QPushButton;

namespace desktop {

// Watches the runs of replacers for its own lifetime. A window appears with the first file of a run and
// closes when the run has ended. If the user stops the run there, it ends with rtl::EAbort, before any
// original has been changed.
class TProgressWindow {
 public:
  explicit TProgressWindow(std::vector<mig::TComponentReplacer*> replacers = {});
  ~TProgressWindow();
  TProgressWindow(const TProgressWindow&) = delete;
  TProgressWindow& operator=(const TProgressWindow&) = delete;

  // Shows the progress of a run that another object watches; `canStop` is false for a restore. Raises
  // rtl::EAbort if the user has stopped it.
  void Report(const std::string& title, const mig::TRunProgress& progress, bool canStop);

  // Hides the window, for example before a message with the outcome.
  void Close();

  // Returns the warnings of the runs, one per line.
  const std::string& Warnings() const { return FWarnings; }

 private:
  void Open(const std::string& title, bool canStop);
  void Show(const mig::TRunProgress& progress);

  std::vector<mig::TComponentReplacer*> FReplacers;
  std::unique_ptr<QDialog> FWindow;
  QLabel* FFileName = nullptr;
  QProgressBar* FBar = nullptr;
  QPushButton* FStop = nullptr;
  QElapsedTimer FSinceShown;
  bool FStopped = false;
  std::string FWarnings;
};

}  // namespace desktop
