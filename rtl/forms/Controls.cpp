#include "rtl/forms/Controls.h"

#include <algorithm>

#include "rtl/forms/Forms.h"

namespace rtl {

// Each constructor calls its own Assign, qualified, because a base constructor cannot call an override.

TControl::TControl(TForm& form, TControl* parent, const TControlRow& row)
    : FForm(form), FParent(parent), FKind(row.Kind), FName(row.Name), FText(row.Text), FPlace(row.Place) {}

void TControl::Assign(const TControlRow& row) {
  FPlace = row.Place;
  SetText(row.Text);
}

void TControl::SetText(std::string_view text) {
  if (FText == text) return;
  FText = text;
  Changed(TChange::Text);
}

void TControl::SetEnabled(bool enabled) {
  if (FEnabled == enabled) return;
  FEnabled = enabled;
  Changed(TChange::Enabled);
}

void TControl::SetFocus() {
  if (FForm.View() != nullptr) FForm.View()->FocusChanged(*this);
}

void TControl::Changed(TChange what) const {
  if (FForm.View() != nullptr) FForm.View()->ControlChanged(*this, what);
}

void TControl::Fire(const std::string& handler) const {
  if (!handler.empty()) FForm.Call(handler);
}

TLabel::TLabel(TForm& form, TControl* parent, const TControlRow& row) : TControl(form, parent, row) {
  TLabel::Assign(row);
}

void TLabel::Assign(const TControlRow& row) {
  TControl::Assign(row);
  FBold = row.Bold;
  FFocusControl = row.FocusControl;
}

bool TLabel::Scrolls() const {
  return Parent() != nullptr && Parent()->Kind() == TControlKind::ScrollBox;
}

TControl* TLabel::FocusControl() const {
  return FFocusControl.empty() ? nullptr : Form().FindControl(FFocusControl);
}

void TButtonControl::Assign(const TControlRow& row) {
  TControl::Assign(row);
  FOnClick = row.OnClick;
  if (FAction != nullptr) FAction->Unlink(*this);
  FAction = row.Action.empty() ? nullptr : &Form().Action(row.Action);
  if (FAction != nullptr) FAction->Link(*this);
}

void TButtonControl::Click() {
  if (FAction != nullptr) FAction->Update();
  if (!Enabled()) return;
  ChangeOnClick();
  Fire(FOnClick);
  if (FAction != nullptr) FAction->Execute();
}

TRadioButton::TRadioButton(TForm& form, TControl* parent, const TControlRow& row)
    : TButtonControl(form, parent, row) {
  TRadioButton::Assign(row);
}

void TRadioButton::Assign(const TControlRow& row) {
  TButtonControl::Assign(row);
  SetChecked(row.Checked);
}

void TRadioButton::SetChecked(bool checked) {
  if (FChecked == checked) return;
  if (checked) {
    for (TControl* other : Parent() != nullptr ? Parent()->Controls() : Form().Controls()) {
      if (other != this && other->Kind() == TControlKind::RadioButton) {
        static_cast<TRadioButton*>(other)->SetChecked(false);
      }
    }
  }
  FChecked = checked;
  Changed(TChange::Checked);
}

TCheckBox::TCheckBox(TForm& form, TControl* parent, const TControlRow& row)
    : TButtonControl(form, parent, row) {
  TCheckBox::Assign(row);
}

void TCheckBox::Assign(const TControlRow& row) {
  TButtonControl::Assign(row);
  SetChecked(row.Checked);
}

void TCheckBox::SetChecked(bool checked) {
  if (FChecked == checked) return;
  FChecked = checked;
  Changed(TChange::Checked);
}

TButton::TButton(TForm& form, TControl* parent, const TControlRow& row) : TButtonControl(form, parent, row) {
  TButton::Assign(row);
}

void TButton::Assign(const TControlRow& row) {
  TButtonControl::Assign(row);
  FDefault = row.Default;
  FCancel = row.Cancel;
  FModalResult = row.ModalResult;
}

void TButton::ChangeOnClick() {
  if (FModalResult != mrNone) Form().SetModalResult(FModalResult);
}

TEdit::TEdit(TForm& form, TControl* parent, const TControlRow& row) : TControl(form, parent, row) {
  TEdit::Assign(row);
}

void TEdit::Assign(const TControlRow& row) {
  TControl::Assign(row);
  FOnChange = row.OnChange;
}

void TEdit::Enter(std::string_view text) {
  if (Text() == text) return;
  SetText(text);
  FireChange();
}

void TEdit::FireChange() {
  Fire(FOnChange);
}

void TComboBox::Pick(int index) {
  const std::string text = FItems[index];
  if (Text() == text) {
    FireChange();
  } else {
    Enter(text);
  }
}

void TComboBox::SetItems(TStringList items) {
  FItems = std::move(items);
  Changed(TChange::Items);
}

void TCheckListBox::SetEntries(const std::vector<std::string>& names) {
  FEntries.clear();
  for (const std::string& name : names) FEntries.push_back({name, false});
  Changed(TChange::Items);
}

void TCheckListBox::SetChecked(int index, bool checked) {
  bool& mark = FEntries[static_cast<size_t>(index)].Checked;
  if (mark == checked) return;
  mark = checked;
  Changed(TChange::Checked);
}

void TCheckListBox::CheckAll(bool checked) {
  for (TEntry& entry : FEntries) entry.Checked = checked;
  Changed(TChange::Checked);
}

void TCheckListBox::RemoveUnchecked() {
  std::erase_if(FEntries, [](const TEntry& entry) { return !entry.Checked; });
  Changed(TChange::Items);
}

void TCheckListBox::Clear() {
  FEntries.clear();
  Changed(TChange::Items);
}

void TPageControl::SetActivePageIndex(int index) {
  if (FActivePageIndex == index) return;
  FActivePageIndex = index;
  Changed(TChange::ActivePage);
}

TImage::TImage(TForm& form, TControl* parent, const TControlRow& row) : TControl(form, parent, row) {
  TImage::Assign(row);
}

void TImage::Assign(const TControlRow& row) {
  TControl::Assign(row);
  FPicture = row.Picture;
}

void TImage::SetSystemIcon(int identifier) {
  FSystemIcon = identifier;
  Changed(TChange::Picture);
}

}  // namespace rtl
