#include "target/KVAWizard.h"

#include "target/KVAPicture.h"

namespace target {

namespace {

using enum rtl::TControlKind;

constexpr char kReplaceBDE[] = "&Replace BDE components";

// clang-format off
constexpr rtl::TControlRow kControls[] = {
    {.Parent = "", .Kind = Image, .Name = "Image1", .Picture = &KVAPicture},
    {.Parent = "Step1Sheet", .Kind = RadioButton, .Name = "rbModeReplace", .Text = kReplaceBDE,
     .Checked = true, .OnClick = "rbModeReplaceClick", .Place = {.GapAbove = true}},
    {.Parent = "Step1Sheet", .Kind = RadioButton, .Name = "rbModeReplaceIBX", .Text = "Replace &IBX components",
     .OnClick = "rbModeReplaceClick"},
    {.Parent = "Step1Sheet", .Kind = RadioButton, .Name = "rbModeRestore",
     .Text = "R&estore original files from backup", .OnClick = "rbModeReplaceClick"},
};
// clang-format on

constexpr rtl::TFormResource kResource = {
    .Name = "KVAWizardForm", .Caption = "KVAWizardForm", .Controls = kControls};

}  // namespace

TKVAWizardForm::TKVAWizardForm()
    : TWizardForm(kResource), rbModeReplaceIBX(Control<rtl::TRadioButton>("rbModeReplaceIBX")) {
  Publish("FormShow", [this] { FormShow(); });
}

int TKVAWizardForm::GetReplacerIndex() const {
  if (rbModeRestore.Checked()) return mig::kRestoreIndex;
  return rbModeReplaceIBX.Checked() ? 1 : 0;
}

void TKVAWizardForm::FormShow() {
  TWizardForm::FormShow();
  rbModeReplace.SetText(kReplaceBDE);
}

std::unique_ptr<mig::TWizardForm> NewKVAWizardForm() {
  return std::make_unique<TKVAWizardForm>();
}

}  // namespace target
