#include "rtl/forms/ControlView.h"

namespace rtl {

void TControlView::Show(TChange what) {
  ++FShowing;
  switch (what) {
    case TChange::Text:
      ShowText();
      break;
    case TChange::Checked:
      ShowChecked();
      break;
    case TChange::Enabled:
      ShowEnabled();
      break;
    case TChange::Items:
      ShowItems();
      break;
    case TChange::ActivePage:
      ShowActivePage();
      break;
    case TChange::Picture:
      ShowPicture();
      break;
  }
  --FShowing;
}

void TControlView::ShowAll() {
  for (const TChange what : {TChange::Text, TChange::Items, TChange::Checked, TChange::ActivePage,
                             TChange::Picture, TChange::Enabled})
    Show(what);
}

}  // namespace rtl
