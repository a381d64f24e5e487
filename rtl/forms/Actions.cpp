#include "rtl/forms/Actions.h"

#include "rtl/forms/Forms.h"

namespace rtl {

TAction::TAction(TForm& form, const TActionRow& row)
    : FForm(form),
      FName(row.Name),
      FCaption(row.Caption),
      FOnExecute(row.OnExecute),
      FOnUpdate(row.OnUpdate) {}

void TAction::SetEnabled(bool enabled) {
  FEnabled = enabled;
  for (TControl* control : FControls) control->SetEnabled(enabled);
}

void TAction::Update() {
  if (!FOnUpdate.empty()) FForm.Call(FOnUpdate);
}

void TAction::Execute() {
  Update();
  if (FEnabled && !FOnExecute.empty()) FForm.Call(FOnExecute);
}

void TAction::Link(TControl& control) {
  FControls.push_back(&control);
  control.SetText(FCaption);
  control.SetEnabled(FEnabled);
}

void TAction::Unlink(TControl& control) {
  std::erase(FControls, &control);
}

}  // namespace rtl
