// The windows of controls: how each kind is shown by a control of the system, and how user input reaches the
// control of the form.
//
// All windows are children of the dialog itself, also those of controls inside pages and boxes. A page, a
// stack of pages and a scroll box have no window. A label in a scroll box is a text that can be scrolled and
// copied.
#pragma once

#include <memory>

#include "native/Dpi.h"
#include "rtl/forms/ControlView.h"

namespace native {

// A control as a window. The window is destroyed with the dialog.
class TControlWindow : public rtl::TControlView {
 public:
  TControlWindow(const TControlWindow&) = delete;
  TControlWindow& operator=(const TControlWindow&) = delete;

  HWND Window() const { return FWindow; }  // null if this kind has none
  // Sets the font, and everything else that depends on the resolution.
  virtual void SetMetrics(const TMetrics& metrics);
  // Returns the size that the contents need. If `width` is not 0, the control will have that width, and
  // breaks its text into lines.
  virtual SIZE Measure(const TMetrics& metrics, int width) const = 0;
  virtual void Place(const RECT& place);

  // User input: a notification code of WM_COMMAND, or a message WM_NOTIFY.
  virtual void Command(int /*code*/) {}
  virtual void Notify(const NMHDR& /*header*/) {}
  // Draws the contents of a window of the class STATIC that the system does not draw.
  virtual void Draw(HDC /*context*/) const {}

 protected:
  // Creates the window of the control's kind in `dialog`, or none.
  TControlWindow(const rtl::TControl& control, HWND dialog, int identifier);

  void ShowEnabled() override { EnableWindow(FWindow, FControl.Enabled() ? TRUE : FALSE); }

 private:
  const rtl::TControl& FControl;
  HWND FWindow;
};

// Returns the window of `control`, with `identifier` as its child window identifier.
std::unique_ptr<TControlWindow> CreateControlWindow(rtl::TControl& control, HWND dialog, int identifier);

}  // namespace native
