// The wizard's steps: page transitions, enabling of controls, and the summaries.

#include <cstddef>
#include <string>
#include <vector>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/wizard/Wizard.h"
#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"

namespace mig {

// A row of the step tables. The first row of the active page whose condition holds is executed.
struct TWizardForm::TStepRow {
  TWizardPage Page;
  bool (TWizardForm::*Condition)() const;
  void (TWizardForm::*DoneFirst)();
  TWizardPage Next;
};

namespace {

constexpr std::nullptr_t kOtherwise = nullptr;
constexpr std::nullptr_t kNothing = nullptr;

}  // namespace

int TWizardForm::GetCurrentStep() const {
  switch (ActivePage()) {
    case Step1Sheet:
      return 1;
    case Step2RestoreSheet:
    case Step2ReplaceSheet:
      return 2;
    case Step3ProjSheet:
    case Step3DirSheet:
      return 3;
    case Step4Sheet:
      return 4;
    case FinalStepSheet:
      break;
  }
  return RestoreChosen() ? 3 : 5;
}

int TWizardForm::GetStepCount() const {
  return RestoreChosen() ? 3 : StepsPageControl.PageCount() - 2;
}

void TWizardForm::UpdateCaption() {
  SetCaption(rtl::Format(SWizardCaption, {FProductName, GetCurrentStep(), GetStepCount()}));
}

void TWizardForm::NextStep() {
  using W = TWizardForm;
  static constexpr TStepRow kRows[] = {
      {Step1Sheet, &W::RestoreChosen, kNothing, Step2RestoreSheet},
      {Step1Sheet, kOtherwise, kNothing, Step2ReplaceSheet},
      {Step2RestoreSheet, &W::UndoFileExists, &W::FillRestoreSummary, FinalStepSheet},
      {Step2RestoreSheet, kOtherwise, &W::RefuseUndoFile, Step2RestoreSheet},
      {Step2ReplaceSheet, &W::ProjectChosen, &W::FillModuleList, Step3ProjSheet},
      {Step2ReplaceSheet, kOtherwise, kNothing, Step3DirSheet},
      {Step3ProjSheet, &W::CheckUnitsSelected, &W::SetDefaultBackupDir, Step4Sheet},
      {Step3ProjSheet, kOtherwise, kNothing, Step3ProjSheet},
      {Step3DirSheet, &W::DirectoryExists, &W::SetDefaultBackupDir, Step4Sheet},
      {Step3DirSheet, kOtherwise, &W::RefuseDirectory, Step3DirSheet},
      {Step4Sheet, kOtherwise, &W::FillReplaceSummary, FinalStepSheet},
      {FinalStepSheet, kOtherwise, kNothing, FinalStepSheet},
  };
  Walk(kRows);
}

void TWizardForm::PreviousStep() {
  using W = TWizardForm;
  static constexpr TStepRow kRows[] = {
      {Step1Sheet, kOtherwise, kNothing, Step1Sheet},
      {Step2RestoreSheet, kOtherwise, kNothing, Step1Sheet},
      {Step2ReplaceSheet, kOtherwise, kNothing, Step1Sheet},
      {Step3ProjSheet, kOtherwise, kNothing, Step2ReplaceSheet},
      {Step3DirSheet, kOtherwise, kNothing, Step2ReplaceSheet},
      {Step4Sheet, &W::ProjectChosen, kNothing, Step3ProjSheet},
      {Step4Sheet, kOtherwise, kNothing, Step3DirSheet},
      {FinalStepSheet, &W::RestoreChosen, kNothing, Step2RestoreSheet},
      {FinalStepSheet, kOtherwise, kNothing, Step4Sheet},
  };
  Walk(kRows);
}

void TWizardForm::Walk(std::span<const TStepRow> rows) {
  const TWizardPage page = ActivePage();
  for (const TStepRow& row : rows) {
    if (row.Page != page || (row.Condition != nullptr && !(this->*row.Condition)())) continue;
    if (row.DoneFirst != nullptr) (this->*row.DoneFirst)();
    StepsPageControl.SetActivePageIndex(row.Next);
    UpdateCaption();
    return;
  }
}

// --- Conditions and actions of the step tables ---

bool TWizardForm::UndoFileExists() const {
  return rtl::FileExists(edUndoFile.Text());
}

bool TWizardForm::DirectoryExists() const {
  return rtl::DirectoryExists(cbDirectory.Text());
}

bool TWizardForm::CheckUnitsSelected() const {
  for (int i = 0; i < lbModules.Count(); ++i) {
    if (lbModules.Checked(i)) return true;
  }
  rtl::MessageDlg(SNoUnitsSelected, rtl::TMsgDlgType::Information, rtl::TMsgDlgButton::OK, 0);
  lbModules.SetFocus();
  return false;
}

void TWizardForm::RefuseUndoFile() {
  rtl::Application().MessageBox(rtl::Format(SUndoFileNotExist, {edUndoFile.Text()}), FOptions->GetTitle(),
                                rtl::MB_ICONINFORMATION);
  edUndoFile.SetFocus();
}

void TWizardForm::RefuseDirectory() {
  rtl::Application().MessageBox(rtl::Format(STargetDirNotExist, {cbDirectory.Text()}), FOptions->GetTitle(),
                                rtl::MB_ICONINFORMATION);
  cbDirectory.SetFocus();
}

void TWizardForm::FillModuleList() {
  // Fills the list only once, so that marks are kept when going back and forth.
  if (lbModules.Count() > 0) return;
  std::vector<std::string> names;
  const int count = TIDEUtils::GetModuleCount();
  for (int i = 0; i < count; ++i) {
    const std::string fileName = TIDEUtils::GetModuleFileName(i);
    if (IsUnitModule(fileName)) names.push_back(rtl::ExtractFileName(fileName));
  }
  lbModules.SetEntries(names);
  btSelectClick();
}

// --- Enabling ---

void TWizardForm::actNextUpdate() {
  switch (ActivePage()) {
    case Step2RestoreSheet:
      actNext.SetEnabled(!edUndoFile.Text().empty());
      break;
    case Step3DirSheet:
      actNext.SetEnabled(!cbDirectory.Text().empty());
      break;
    default:
      actNext.SetEnabled(ActivePage() != FinalStepSheet);
      break;
  }
}

void TWizardForm::actBackUpdate() {
  actBack.SetEnabled(ActivePage() != Step1Sheet);
}

void TWizardForm::actFinishUpdate() {
  actFinish.SetEnabled(ActivePage() == FinalStepSheet);
}

void TWizardForm::actMakeBackupUpdate() {
  lBackupFolder.SetEnabled(chMakeBackup.Checked());
  cbBackupDir.SetEnabled(chMakeBackup.Checked());
  btBrowseBackFolder.SetEnabled(chMakeBackup.Checked());
}

void TWizardForm::actWriteLogUpdate() {
  chViewLog.SetEnabled(chWriteLog.Checked());
  lblLogNote.SetEnabled(chWriteLog.Checked());
}

// --- Summaries ---

void TWizardForm::FillRestoreSummary() {
  lSummary.SetText(std::string(SMode) + SModeRestore + "\n\n" + rtl::Format(SUndoFile, {edUndoFile.Text()}) +
                   "\n\n");
}

void TWizardForm::FillReplaceSummary() {
  const bool project = ProjectChosen();
  const bool log = chWriteLog.Checked();
  struct TSummaryRow {
    bool Condition;
    std::string Text;
    std::string_view Then;
  };
  const TSummaryRow rows[] = {
      {true, SMode, ""},
      {true, rtl::Format(SModeReplace, {FOptions->SourceName}), "\n\n"},
      {true, SScanDest, ""},
      {project, SDestProject, "\n\n"},
      {!project, rtl::Format(SDestFolder, {cbDirectory.Text()}), "\n\n"},
      {chMakeBackup.Checked(), rtl::Format(SBackupDir, {GetBackupDir()}), "\n\n"},
      {log, SWriteLog, "\n\n"},
      {log && chViewLog.Checked(), SViewLog, "\n\n"},
      {project, SUnitsList, "\n"},
  };
  std::string summary;
  for (const TSummaryRow& row : rows) {
    if (row.Condition) summary.append(row.Text).append(row.Then);
  }
  for (int i = 0; project && i < lbModules.Count(); ++i) {
    if (lbModules.Checked(i)) summary.append(lbModules.Entry(i)).append("\n");
  }
  lSummary.SetText(summary);
}

}  // namespace mig
