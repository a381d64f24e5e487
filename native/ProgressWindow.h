// The window with the progress of a run.
#pragma once

#include <functional>
#include <memory>

#include "MigWizard/expert/RunView.h"
#include "native/Dpi.h"

namespace native {

class TProgressWindow : public mig::TRunView {
 public:
  // `owner` returns the window that is disabled while a progress window is open.
  explicit TProgressWindow(std::function<HWND()> owner) : FOwnerOf(std::move(owner)) {}
  ~TProgressWindow() override;

 protected:
  void OpenWindow(const std::string& title, bool canStop) override;
  void ShowState(const mig::TRunProgress& progress, bool canStop) override;
  void CloseWindow() override;

 private:
  static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
  bool Handle(UINT message, WPARAM wParam, LPARAM lParam);
  HWND AddControl(const wchar_t* windowClass, const wchar_t* text, DWORD style, int identifier);
  void SetDpi(int dpi);
  void StopRun();

  std::function<HWND()> FOwnerOf;
  HWND FOwner = nullptr;
  HWND FWindow = nullptr;
  HWND FPhase = nullptr;
  HWND FFileName = nullptr;
  HWND FBar = nullptr;
  HWND FCount = nullptr;
  HWND FStop = nullptr;
  std::unique_ptr<TMetrics> FMetrics;
};

}  // namespace native
