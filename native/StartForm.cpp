#include "native/StartForm.h"

#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"

namespace native {

namespace {

using enum rtl::TControlKind;

constexpr char kFilter[] =
    "Projects and groups|*.dpr;*.dpk;*.dproj;*.bdsproj;*.bpg;*.groupproj;*.bdsgroup|All files (*.*)|*.*";

constexpr rtl::TActionRow kActions[] = {{"actContinue", "Continue", "Accept", "UpdateContinue"}};

// clang-format off
constexpr rtl::TControlRow kControls[] = {
    {.Parent = "", .Kind = PageControl, .Name = "Pages", .Place = {.Width = 68}},
    {.Parent = "Pages", .Kind = TabSheet, .Name = "Page"},
    {.Parent = "Page", .Kind = Label, .Name = "lTitle", .Text = "What do you want to migrate?", .Bold = true},
    {.Parent = "Page", .Kind = RadioButton, .Name = "rbProject", .Text = "A &project or project group:",
     .Checked = true, .Place = {.GapAbove = true}},
    {.Parent = "Page", .Kind = Edit, .Name = "edProject", .Place = {.Indented = true}},
    {.Parent = "Page", .Kind = Button, .Name = "btBrowse", .Text = "&Browse...", .OnClick = "Browse",
     .Place = {.Beside = true}},
    {.Parent = "Page", .Kind = RadioButton, .Name = "rbFolder",
     .Text = "A &folder with units, or files from a backup", .Place = {.GapAbove = true}},
    {.Parent = "Page", .Kind = Label, .Name = "lNote",
     .Text = "The folder, or the backup file, is chosen on the next pages.", .Place = {.Indented = true}},
    {.Parent = "", .Kind = Bevel, .Name = "Line"},
    {.Parent = "", .Kind = Button, .Name = "btContinue", .Text = "Continue", .Default = true,
     .Action = "actContinue"},
    {.Parent = "", .Kind = Button, .Name = "btCancel", .Text = "Cancel", .Cancel = true,
     .ModalResult = rtl::mrCancel},
};
// clang-format on

constexpr rtl::TFormResource kResource = {
    .Name = "StartForm", .Caption = "Migration Wizard", .Actions = kActions, .Controls = kControls};

}  // namespace

TStartForm::TStartForm()
    : TForm(kResource),
      FProject(Control<rtl::TRadioButton>("rbProject")),
      FProjectFile(Control<rtl::TEdit>("edProject")) {
  Publish("Browse", [this] { Browse(); });
  Publish("Accept", [this] { Accept(); });
  Publish("UpdateContinue", [this] {
    FProjectFile.SetEnabled(FProject.Checked());
    Action("actContinue").SetEnabled(!FProject.Checked() || !FProjectFile.Text().empty());
  });
}

void TStartForm::Browse() {
  rtl::TOpenDialog dialog;
  dialog.Filter = kFilter;
  dialog.PathMustExist = true;
  dialog.FileMustExist = true;
  dialog.InitialDir = rtl::ExtractFileDir(FProjectFile.Text());
  if (!dialog.Execute()) return;
  FProject.SetChecked(true);
  FProjectFile.SetText(dialog.FileName);
}

void TStartForm::Accept() {
  if (!FProject.Checked() || rtl::FileExists(FProjectFile.Text())) return SetModalResult(rtl::mrOk);
  rtl::Application().MessageBox(rtl::Format("Project \"%s\" does not exist.", {FProjectFile.Text()}),
                                Caption(), rtl::MB_ICONINFORMATION);
  FProjectFile.SetFocus();
}

std::optional<std::string> TStartForm::Ask() {
  if (ShowModal() != rtl::mrOk) return std::nullopt;
  return FProject.Checked() ? FProjectFile.Text() : std::string();
}

}  // namespace native
