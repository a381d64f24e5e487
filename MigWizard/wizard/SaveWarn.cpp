#include "MigWizard/wizard/SaveWarn.h"

#include "MigWizard/run/RExpertRes.h"
#include "rtl/forms/Application.h"
#include "rtl/text/Registry.h"

namespace mig {

namespace {

using enum rtl::TControlKind;

// clang-format off
constexpr rtl::TControlRow kSaveWarnControls[] = {
    {.Parent = "", .Kind = Image, .Name = "Image1"},
    {.Parent = "", .Kind = Label, .Name = "lblWarn", .Text = "All modified files will be saved. Continue?"},
    {.Parent = "", .Kind = Label, .Name = "Label2", .Text = "Note:"},
    {.Parent = "", .Kind = Label, .Name = "lblNote", .Text = "lblNote", .Place = {.Beside = true}},
    {.Parent = "", .Kind = CheckBox, .Name = "chkDontAsk", .Text = "&Don't ask me this again",
     .Place = {.GapAbove = true}},
    {.Parent = "", .Kind = Bevel, .Name = "Bevel1"},
    {.Parent = "", .Kind = Button, .Name = "OKBtn", .Text = "&Yes", .Default = true, .ModalResult = rtl::mrYes},
    {.Parent = "", .Kind = Button, .Name = "CancelBtn", .Text = "&No", .Cancel = true, .ModalResult = rtl::mrNo},
};

struct TQuestion {
  bool IsProject;
  bool IsRestore;
  const char* Key;
  const char* Warn;
  const char* Note;
};

constexpr TQuestion kQuestions[] = {
    {true,  false, "ReplaceProjWarn", SProjectWillBeSaved,  SFormsWillBeHidden},
    {false, true,  "RestoreDirWarn",  SFilesWillBeRestored, SProjectWillBeClosed},
    {true,  true,  "RestoreProjWarn", SFilesWillBeRestored, SProjectWillBeClosed},
    {false, false, "ReplaceDirWarn",  SProjectWillBeSaved,  SProjectWillBeClosed},
};
// clang-format on

constexpr rtl::TFormResource kResource = {.Name = "SaveWarnForm",
                                          .Caption = "BDE Migration Wizard",
                                          .MinimumWidth = 62,
                                          .Controls = kSaveWarnControls};

const TQuestion& Question(bool isProject, bool isRestore) {
  const TQuestion* question = kQuestions;
  while (question->IsProject != isProject || question->IsRestore != isRestore) ++question;
  return *question;
}

}  // namespace

TSaveWarnForm::TSaveWarnForm()
    : TForm(kResource),
      lblWarn(Control<rtl::TLabel>("lblWarn")),
      Image1(Control<rtl::TImage>("Image1")),
      lblNote(Control<rtl::TLabel>("lblNote")),
      chkDontAsk(Control<rtl::TCheckBox>("chkDontAsk")) {
  Publish("FormCreate", [this] { FormCreate(); });
  Call("FormCreate");
}

void TSaveWarnForm::FormCreate() {
  Image1.SetSystemIcon(rtl::IDI_QUESTION);
}

bool ShowSaveWarning(const std::string& title, bool isProject, bool isRestore) {
  const TQuestion& question = Question(isProject, isRestore);
  rtl::TRegIniFile reg(SRegistryRoot, rtl::KEY_READ_WRITE);
  if (!reg.ReadBool(title, question.Key, true)) return true;

  TSaveWarnForm form;
  form.SetCaption(title);
  form.lblNote.SetText(question.Note);
  form.lblWarn.SetText(question.Warn);
  if (form.ShowModal() != rtl::mrYes) return false;
  reg.WriteBool(title, question.Key, !form.chkDontAsk.Checked());
  return true;
}

}  // namespace mig
