// The window with the progress of a run.
#pragma once

#include <memory>

#include "MigWizard/expert/RunView.h"

class QDialog;
class QLabel;
class QProgressBar;
class QPushButton;

namespace desktop {

class TProgressWindow : public mig::TRunView {
 public:
  TProgressWindow();
  ~TProgressWindow() override;

 protected:
  void OpenWindow(const std::string& title, bool canStop) override;
  void ShowState(const mig::TRunProgress& progress, bool canStop) override;
  void CloseWindow() override;

 private:
  std::unique_ptr<QDialog> FWindow;
  QLabel* FPhase = nullptr;
  QLabel* FFileName = nullptr;
  QProgressBar* FBar = nullptr;
  QPushButton* FStop = nullptr;
};

}  // namespace desktop
