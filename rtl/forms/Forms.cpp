#include "rtl/forms/Forms.h"

#include <algorithm>

#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"

namespace rtl {

namespace {

std::unique_ptr<TControl> CreateControl(TForm& form, TControl* parent, const TControlRow& row) {
  switch (row.Kind) {
    case TControlKind::Label:
      return std::make_unique<TLabel>(form, parent, row);
    case TControlKind::RadioButton:
      return std::make_unique<TRadioButton>(form, parent, row);
    case TControlKind::CheckBox:
      return std::make_unique<TCheckBox>(form, parent, row);
    case TControlKind::Edit:
      return std::make_unique<TEdit>(form, parent, row);
    case TControlKind::ComboBox:
      return std::make_unique<TComboBox>(form, parent, row);
    case TControlKind::CheckListBox:
      return std::make_unique<TCheckListBox>(form, parent, row);
    case TControlKind::Button:
      return std::make_unique<TButton>(form, parent, row);
    case TControlKind::PageControl:
      return std::make_unique<TPageControl>(form, parent, row);
    case TControlKind::TabSheet:
      return std::make_unique<TTabSheet>(form, parent, row);
    case TControlKind::Image:
      return std::make_unique<TImage>(form, parent, row);
    case TControlKind::ScrollBox:
      return std::make_unique<TScrollBox>(form, parent, row);
    case TControlKind::Bevel:
      return std::make_unique<TBevel>(form, parent, row);
  }
  throw EAssertionFailed("No such kind of control");
}

void AssignUnlessEmpty(std::string& field, std::string_view value) {
  if (!value.empty()) field = value;
}

bool TakesInput(const TControl& control) {
  switch (control.Kind()) {
    case TControlKind::Edit:
    case TControlKind::ComboBox:
    case TControlKind::CheckListBox:
    case TControlKind::CheckBox:
      return control.Enabled();
    case TControlKind::RadioButton:
      return control.Enabled() && static_cast<const TRadioButton&>(control).Checked();
    default:
      return false;
  }
}

// Returns the first visible control inside `container` that takes input; null if there is none.
TControl* FirstInput(const TControl& container) {
  const bool isStack = container.Kind() == TControlKind::PageControl;
  const TControl& page = isStack ? static_cast<const TPageControl&>(container).ActivePage() : container;
  for (TControl* control : page.Controls()) {
    if (TakesInput(*control)) return control;
    if (TControl* const inside = FirstInput(*control)) return inside;
  }
  return nullptr;
}

}  // namespace

TForm::TForm(const TFormResource& resource, const TFormResource& derived) {
  Read(resource);
  Read(derived);
}

TForm::~TForm() = default;

void TForm::Read(const TFormResource& resource) {
  AssignUnlessEmpty(FName, resource.Name);
  AssignUnlessEmpty(FCaption, resource.Caption);
  AssignUnlessEmpty(FOnShow, resource.OnShow);
  AssignUnlessEmpty(FOnClose, resource.OnClose);
  if (resource.MinimumWidth != 0) FMinimumWidth = resource.MinimumWidth;
  for (const TActionRow& row : resource.Actions) FActions.push_back(std::make_unique<TAction>(*this, row));
  for (const TControlRow& row : resource.Controls) ReadControl(row);
}

void TForm::ReadControl(const TControlRow& row) {
  TControl* control = FindControl(row.Name);
  TControl* parent = row.Parent.empty() ? nullptr : &Control<TControl>(row.Parent);
  auto& siblings = parent != nullptr ? parent->FControls : FControls;
  if (control != nullptr) {
    Assert(control->Kind() == row.Kind && control->Parent() == parent,
           "A derived row changes its control's kind");
    std::erase(siblings, control);
    siblings.push_back(control);
    control->Assign(row);
  } else {
    FOwned.push_back(CreateControl(*this, parent, row));
    siblings.push_back(FOwned.back().get());
  }
}

void TForm::SetCaption(std::string_view caption) {
  if (FCaption == caption) return;
  FCaption = caption;
  if (FView != nullptr) FView->CaptionChanged();
}

int TForm::ShowModal() {
  FModalResult = mrNone;
  if (!FOnShow.empty()) Call(FOnShow);
  UpdateActions();
  Application().FrontEnd().ShowModal(*this);
  if (!FOnClose.empty()) Call(FOnClose);
  return FModalResult;
}

void TForm::SetModalResult(int result) {
  FModalResult = result;
  if (FView != nullptr) FView->ModalResultChanged();
}

void TForm::UpdateActions() {
  for (const auto& action : FActions) action->Update();
}

TButton* TForm::FindButton(bool (TButton::*role)() const) const {
  for (const auto& control : FOwned) {
    if (control->Kind() != TControlKind::Button || !control->Enabled()) continue;
    auto* const button = static_cast<TButton*>(control.get());
    if ((button->*role)()) return button;
  }
  return nullptr;
}

TControl* TForm::FirstControl() const {
  for (const TControl* control : FControls) {
    if (TControl* const first = FirstInput(*control)) return first;
  }
  return DefaultButton();
}

TControl* TForm::FindControl(std::string_view name) const {
  const auto found = std::find_if(FOwned.begin(), FOwned.end(),
                                  [&](const auto& control) { return SameText(control->Name(), name); });
  return found != FOwned.end() ? found->get() : nullptr;
}

TAction& TForm::Action(std::string_view name) const {
  const auto found = std::find_if(FActions.begin(), FActions.end(),
                                  [&](const auto& action) { return SameText(action->Name(), name); });
  Assert(found != FActions.end(), "No such action");
  return **found;
}

void TForm::Publish(std::string_view name, std::function<void()> handler) {
  FHandlers.insert_or_assign(std::string(name), std::move(handler));
}

void TForm::Call(std::string_view handler) {
  const auto found = FHandlers.find(handler);
  Assert(found != FHandlers.end(), "No such handler");
  found->second();
}

}  // namespace rtl
