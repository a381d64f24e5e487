#include "rtl/forms/FormRows.h"

#include "rtl/forms/Forms.h"

namespace rtl {

bool TFormRow::Grows() const {
  const TControl& first = *Controls.front();
  switch (first.Kind()) {
    case TControlKind::CheckListBox:
    case TControlKind::PageControl:
    case TControlKind::ScrollBox:
      return true;
    case TControlKind::Label:
      return static_cast<const TLabel&>(first).Scrolls();
    default:
      return false;
  }
}

bool TFormRow::Widens(size_t index) const {
  switch (Controls[index]->Kind()) {
    case TControlKind::Button:
      return false;
    case TControlKind::Label:
      return index + 1 == Controls.size();
    default:
      return true;
  }
}

std::vector<TFormRow> RowsOf(const std::vector<TControl*>& controls) {
  const std::span all(controls);
  std::vector<TFormRow> rows;
  for (size_t start = 0; start < all.size();) {
    size_t end = start + 1;
    while (end < all.size() && all[end]->Place().Beside) ++end;
    rows.push_back({all.subspan(start, end - start)});
    start = end;
  }
  return rows;
}

TFormParts::TFormParts(const TForm& form) {
  for (TControl* control : form.Controls()) {
    switch (control->Kind()) {
      case TControlKind::Image:
        Pictures.push_back(control);
        break;
      case TControlKind::Button:
        Buttons.push_back(control);
        break;
      case TControlKind::Bevel:
        Line = control;
        break;
      default:
        Body.push_back(control);
        break;
    }
  }
}

}  // namespace rtl
