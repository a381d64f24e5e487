// Shows a control in a front end, one kind of its state at a time. The front end overrides the Show
// operations.
#pragma once

#include "rtl/forms/Controls.h"

namespace rtl {

class TControlView {
 public:
  virtual ~TControlView() = default;

  // Shows the control's present state of that kind. A front end calls it when the control has changed.
  void Show(TChange what);
  void ShowAll();

 protected:
  virtual void ShowText() {}
  virtual void ShowChecked() {}
  virtual void ShowEnabled() = 0;
  virtual void ShowItems() {}
  virtual void ShowPicture() {}
  virtual void ShowActivePage() {}
  // Returns whether one of these operations is running. A notification of the toolkit is not user input then.
  bool IsShowing() const { return FShowing > 0; }

 private:
  int FShowing = 0;
};

}  // namespace rtl
