#include "MigWizard/wizard/Wizard.h"

#include <string>
#include <vector>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/wizard/WizardSteps.h"
#include "MigWizard/wizard/WizardSummary.h"
#include "rtl/forms/Application.h"
#include "rtl/text/Registry.h"
#include "rtl/text/SysUtils.h"

namespace mig {

std::unique_ptr<TWizardForm> WizardForm;

namespace {

constexpr int kMaxHistory = 10;
constexpr char kUndoFilter[] = "Undo files (*.reu)|*.reu|All files (*.*)|*.*";

bool PickFolder(std::string& folder) {
  folder.clear();
  return rtl::SelectDirectory(SSelectDirectory, "", folder);
}

// Inserts a new entry at the top; an existing one keeps its position.
void AddToHistory(rtl::TComboBox& combo) {
  rtl::TStringList items = combo.Items();
  if (combo.Text().empty() || items.IndexOf(combo.Text()) >= 0) return;
  items.Insert(0, combo.Text());
  if (items.Count() > kMaxHistory) items.Delete(items.Count() - 1);
  combo.SetItems(std::move(items));
}

rtl::TStringList Lines(std::string_view text) {
  rtl::TStringList lines;
  lines.SetText(text);
  return lines;
}

}  // namespace

TWizardForm::TWizardForm(const rtl::TFormResource& derived)
    : TForm(kWizardFormResource, derived),
      StepsPageControl(Control<rtl::TPageControl>("StepsPageControl")),
      Label2(Control<rtl::TLabel>("Label2")),
      rbModeReplace(Control<rtl::TRadioButton>("rbModeReplace")),
      rbModeRestore(Control<rtl::TRadioButton>("rbModeRestore")),
      edUndoFile(Control<rtl::TEdit>("edUndoFile")),
      rbDestProject(Control<rtl::TRadioButton>("rbDestProject")),
      rbDestFolder(Control<rtl::TRadioButton>("rbDestFolder")),
      lbModules(Control<rtl::TCheckListBox>("lbModules")),
      cbDirectory(Control<rtl::TComboBox>("cbDirectory")),
      chSubDirs(Control<rtl::TCheckBox>("chSubDirs")),
      chMakeBackup(Control<rtl::TCheckBox>("chMakeBackup")),
      lBackupFolder(Control<rtl::TLabel>("lBackupFolder")),
      cbBackupDir(Control<rtl::TComboBox>("cbBackupDir")),
      btBrowseBackFolder(Control<rtl::TButton>("btBrowseBackFolder")),
      chWriteLog(Control<rtl::TCheckBox>("chWriteLog")),
      lblLogNote(Control<rtl::TLabel>("lblLogNote")),
      chViewLog(Control<rtl::TCheckBox>("chViewLog")),
      lSummary(Control<rtl::TLabel>("lSummary")),
      actNext(Action("actNext")),
      actBack(Action("actBack")),
      actFinish(Action("actFinish")) {
  PublishHandlers();
}

void TWizardForm::PublishHandlers() {
  Publish("FormShow", [this] { FormShow(); });
  Publish("FormClose", [this] { FormClose(); });
  Publish("rbModeReplaceClick", [this] { rbModeReplaceClick(); });
  Publish("btRestoreBrowseClick", [this] { btRestoreBrowseClick(); });
  Publish("btSelectClick", [this] { btSelectClick(); });
  Publish("btDeselectClick", [this] { btDeselectClick(); });
  Publish("btBrowseFolderClick", [this] { btBrowseFolderClick(); });
  Publish("btBrowseBackFolderClick", [this] { btBrowseBackFolderClick(); });
  Publish("cbBackupDirChange", [this] { cbBackupDirChange(); });
  Publish("actNextExecute", [this] { actNextExecute(); });
  Publish("actBackExecute", [this] { actBackExecute(); });
  Publish("actFinishExecute", [this] { actFinishExecute(); });
  Publish("actMakeBackupExecute", [this] { actMakeBackupExecute(); });
  Publish("actWriteLogExecute", [this] { actWriteLogExecute(); });
  Publish("actNextUpdate", [this] { actNextUpdate(); });
  Publish("actBackUpdate", [this] { actBackUpdate(); });
  Publish("actFinishUpdate", [this] { actFinishUpdate(); });
  Publish("actMakeBackupUpdate", [this] { actMakeBackupUpdate(); });
  Publish("actWriteLogUpdate", [this] { actWriteLogUpdate(); });
}

int TWizardForm::GetReplacerIndex() const {
  return RestoreChosen() ? kRestoreIndex : 0;
}

void TWizardForm::SetWelcomeText(std::string_view sourceName, std::string_view productName) {
  Label2.SetText(rtl::Format(SWelcome, {productName, sourceName, productName}));
}

void TWizardForm::FormShow() {
  FProjectFile = TIDEUtils::GetProjectFileName();
  const bool hasProject = !FProjectFile.empty();
  rbDestProject.SetEnabled(hasProject);
  if (hasProject && FOptions->Dest == sdProject) rbDestProject.SetChecked(true);
  if (!hasProject || FOptions->Dest == sdFolder) rbDestFolder.SetChecked(true);
  cbDirectory.SetText(FOptions->Directory);
  chSubDirs.SetChecked(FOptions->IncludeSubDirs);
  // The backup folder of an earlier run is offered in the history only.
  cbBackupDir.SetText("");
  chMakeBackup.SetChecked(FOptions->MakeBackup);
  chWriteLog.SetChecked(FOptions->WriteLog);
  chViewLog.SetChecked(FOptions->ViewLog);
  StepsPageControl.SetActivePageIndex(Step1Sheet);
  UpdateCaption();
}

void TWizardForm::FormClose() {
  lbModules.Clear();
}

void TWizardForm::rbModeReplaceClick() {
  UpdateCaption();
}

void TWizardForm::btRestoreBrowseClick() {
  rtl::TOpenDialog dialog;
  dialog.Filter = kUndoFilter;
  dialog.PathMustExist = true;
  dialog.FileMustExist = true;
  dialog.InitialDir = rtl::ExtractFileDir(edUndoFile.Text());
  if (dialog.Execute()) edUndoFile.SetText(dialog.FileName);
}

void TWizardForm::btSelectClick() {
  lbModules.CheckAll(true);
}

void TWizardForm::btDeselectClick() {
  lbModules.CheckAll(false);
}

void TWizardForm::btBrowseFolderClick() {
  std::string folder;
  if (PickFolder(folder)) cbDirectory.SetText(folder);
}

void TWizardForm::btBrowseBackFolderClick() {
  std::string folder;
  if (!PickFolder(folder)) return;
  cbBackupDir.SetText(folder);
  FBackupDirChanged = true;
}

void TWizardForm::cbBackupDirChange() {
  FBackupDirChanged = true;
}

void TWizardForm::actNextExecute() {
  NextStep();
}

void TWizardForm::actBackExecute() {
  PreviousStep();
}

void TWizardForm::actFinishExecute() {
  if (ProjectChosen()) {
    FOptions->Dest = sdProject;
    lbModules.RemoveUnchecked();
    rtl::TStringList units;
    for (int i = 0; i < lbModules.Count(); ++i) units.Add(lbModules.Entry(i));
    FOptions->UnitNames = units.Text();
  } else {
    FOptions->Dest = sdFolder;
  }
  FOptions->Directory = cbDirectory.Text();
  FOptions->IncludeSubDirs = chSubDirs.Checked();
  FOptions->MakeBackup = chMakeBackup.Checked();
  FOptions->BackupDir = GetBackupDir();
  FOptions->WriteLog = chWriteLog.Checked();
  FOptions->ViewLog = chViewLog.Checked();
  AddToHistory(cbDirectory);
  AddToHistory(cbBackupDir);
}

// --- Steps ---

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
  Walk(NextSteps());
}

void TWizardForm::PreviousStep() {
  Walk(PreviousSteps());
}

void TWizardForm::Walk(std::span<const TStepRow> rows) {
  const TWizardPage page = ActivePage();
  for (const TStepRow& row : rows) {
    if (row.Page != page || !Holds(row.Condition)) continue;
    Perform(row.Action);
    StepsPageControl.SetActivePageIndex(row.Next);
    UpdateCaption();
    return;
  }
}

bool TWizardForm::Holds(TStepCondition condition) const {
  switch (condition) {
    case TStepCondition::Otherwise:
      return true;
    case TStepCondition::RestoreChosen:
      return RestoreChosen();
    case TStepCondition::ProjectChosen:
      return ProjectChosen();
    case TStepCondition::UndoFileExists:
      return rtl::FileExists(edUndoFile.Text());
    case TStepCondition::DirectoryExists:
      return rtl::DirectoryExists(cbDirectory.Text());
    case TStepCondition::CheckUnitsSelected:
      return CheckUnitsSelected();
  }
  return false;
}

void TWizardForm::Perform(TStepAction action) {
  switch (action) {
    case TStepAction::None:
      return;
    case TStepAction::FillModuleList:
      return FillModuleList();
    case TStepAction::SetDefaultBackupDir:
      return SetDefaultBackupDir();
    case TStepAction::FillRestoreSummary:
      return lSummary.SetText(RestoreSummary(*this));
    case TStepAction::FillReplaceSummary:
      return lSummary.SetText(ReplaceSummary(*this));
    case TStepAction::RefuseUndoFile:
      return Refuse(SUndoFileNotExist, edUndoFile);
    case TStepAction::RefuseDirectory:
      return Refuse(STargetDirNotExist, cbDirectory);
  }
}

bool TWizardForm::CheckUnitsSelected() const {
  for (int i = 0; i < lbModules.Count(); ++i) {
    if (lbModules.Checked(i)) return true;
  }
  rtl::MessageDlg(SNoUnitsSelected, rtl::TMsgDlgType::Information, rtl::TMsgDlgButton::OK, 0);
  lbModules.SetFocus();
  return false;
}

void TWizardForm::Refuse(std::string_view message, rtl::TControl& entry) const {
  rtl::Application().MessageBox(rtl::Format(message, {entry.Text()}), FOptions->GetTitle(),
                                rtl::MB_ICONINFORMATION);
  entry.SetFocus();
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

// --- Backup folder ---

std::string TWizardForm::BaseFolder() const {
  return ProjectChosen() ? rtl::ExtractFileDir(FProjectFile) : cbDirectory.Text();
}

void TWizardForm::SetDefaultBackupDir() {
  if (!FBackupDirChanged) cbBackupDir.SetText(JoinPath(BaseFolder(), SBackupFolderName));
}

std::string TWizardForm::GetBackupDir() const {
  const std::string& entry = cbBackupDir.Text();
  if (!rtl::ExtractFileDrive(entry).empty()) return entry;
  return JoinPath(BaseFolder(), entry);
}

// --- Settings ---

void TWizardForm::LoadHistory(const rtl::TRegIniFile& reg, std::string_view section) {
  SetLeft(reg.ReadInteger(section, "Left", Left()));
  SetTop(reg.ReadInteger(section, "Top", Top()));
  cbDirectory.SetItems(Lines(reg.ReadString(section, "DirHistory", "")));
  cbBackupDir.SetItems(Lines(reg.ReadString(section, "BackDirHistory", "")));
  // One Boolean stores the mode, so any mode other than this form's replace mode is loaded as restore.
  rbModeReplace.SetChecked(reg.ReadBool(section, "ReplaceMode", rbModeReplace.Checked()));
  rbModeRestore.SetChecked(!rbModeReplace.Checked());
  edUndoFile.SetText(reg.ReadString(section, "LastUndo", ""));
}

void TWizardForm::SaveHistory(rtl::TRegIniFile& reg, std::string_view section) const {
  reg.WriteInteger(section, "Left", Left());
  reg.WriteInteger(section, "Top", Top());
  reg.WriteString(section, "DirHistory", cbDirectory.Items().Text());
  reg.WriteString(section, "BackDirHistory", cbBackupDir.Items().Text());
  reg.WriteBool(section, "ReplaceMode", rbModeReplace.Checked());
  reg.WriteString(section, "LastUndo", chMakeBackup.Checked() ? JoinPath(GetBackupDir(), SUndoFileName) : "");
}

}  // namespace mig
