// How far a run has come, while it goes on. The run is one long call; the window lives on by looking after
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

// Watches the runs of replacers for its own lifetime: a window appears with the first file of a run and goes
// when the run has ended. The user can stop a run there: it ends with rtl::EAbort before any original has
// been touched.
class TProgressWindow {
 public:
  explicit TProgressWindow(std::vector<mig::TComponentReplacer*> replacers = {});
  ~TProgressWindow();
  TProgressWindow(const TProgressWindow&) = delete;
  TProgressWindow& operator=(const TProgressWindow&) = delete;

  // Shows where a run stands that somebody else watches; `canStop` False is for a restore. Raises rtl::EAbort
  // when the user has stopped it.
  void Report(const std::string& title, const mig::TRunProgress& progress, bool canStop);

  // Takes the window away, as before a message of the outcome.
  void Close();

  // What the runs had to say that did not stop them, a line each.
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
