// The window of a form: creates a system control for every control, shows every change of state, and passes
// user input to the controls. It works for any form.
//
// The window is a dialog of the system, so the dialog's own rules hold for Tab and arrow keys, accelerators,
// the Enter and Escape keys and the default button.
#pragma once

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "native/ControlWindows.h"
#include "rtl/forms/Forms.h"

namespace native {

class TFormWindow : public rtl::IFormView {
 public:
  // Becomes the form's view for its own lifetime. Does not own the form, which must outlive it. `owner` is
  // disabled while the form is shown; null if there is none.
  TFormWindow(rtl::TForm& form, HWND owner);
  ~TFormWindow() override;
  TFormWindow(const TFormWindow&) = delete;
  TFormWindow& operator=(const TFormWindow&) = delete;

  // Called for the F1 key.
  std::function<void()> OnHelp;

  // Shows the window until the form has a modal result.
  void Run();

  // --- rtl::IFormView ---
  void ControlChanged(const rtl::TControl& control, rtl::TChange what) override;
  void FocusChanged(const rtl::TControl& control) override;
  void CaptionChanged() override;
  void ModalResultChanged() override;

 private:
  static INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
  bool Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void Command(int identifier, int code);

  void AddControls(std::vector<rtl::TControl*> controls);
  TControlWindow& WindowOf(const rtl::TControl& control) const { return *FWindows.at(&control); }
  void ShowPages();
  void SetDpi(int dpi);
  SIZE LayOut();
  void Place();
  void SavePlace();
  void BeIdle();
  void SetFocusTo(const rtl::TControl& control);

  rtl::TForm& FForm;
  HWND FOwner;
  HWND FDialog = nullptr;
  std::unique_ptr<TMetrics> FMetrics;
  std::unordered_map<const rtl::TControl*, std::unique_ptr<TControlWindow>> FWindows;
  std::vector<rtl::TControl*> FOrder;  // all controls, in tab order
  bool FPageTurned = true;
};

}  // namespace native
