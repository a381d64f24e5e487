#include "MigWizard/expert/ReplaceExpert.h"

#include <algorithm>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/wizard/SaveWarn.h"
#include "rtl/forms/Application.h"
#include "rtl/text/Registry.h"
#include "rtl/text/SysUtils.h"

namespace mig {

using toolsapi::CastTo;
using toolsapi::IOTAEditor;
using toolsapi::IOTAModule;
using toolsapi::IOTASourceEditor;
using toolsapi::Supports;
using toolsapi::TIntf;

namespace {

constexpr char kMenuCaption[] = "&Migration Wizard";

// Replaces slashes, which component names must not contain.
std::string AsComponentName(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

// Destroys the wizard's form at the end of its use, also after an exception.
struct TFormRelease {
  ~TFormRelease() { WizardForm.reset(); }
};

TIntf<IOTASourceEditor> FindSourceEditor(IOTAModule& module) {
  const int count = module.GetModuleFileCount();
  for (int i = 0; i < count; ++i) {
    if (auto editor = Supports<IOTASourceEditor>(module.GetModuleFileEditor(i))) return editor;
  }
  return nullptr;
}

bool IsOfActiveProject(IOTAModule& module) {
  const int count = module.GetOwnerCount();
  for (int i = 0; i < count; ++i) {
    if (module.GetOwner(i) == TIDEUtils::GetActiveProject()) return true;
  }
  return false;
}

// Makes the host show the new files of all units of the project, selected for the run or not.
void ReloadProjectUnits() {
  const int count = TIDEUtils::GetModuleCount();
  for (int i = 0; i < count; ++i) {
    const std::string fileName = TIDEUtils::GetModuleFileName(i);
    if (IsUnitModule(fileName)) TIDEUtils::ReloadFile(fileName);
  }
}

void ShowOutcome(bool succeeded, const char* success, const char* failure, const std::string& title) {
  rtl::Application().MessageBox(succeeded ? success : failure, title,
                                succeeded ? rtl::MB_ICONINFORMATION : rtl::MB_ICONERROR);
}

void ShowLeftOut(const std::vector<TLeftOut>& leftOut, const std::string& title) {
  std::string text = "These were left as they are:";
  for (const TLeftOut& entry : leftOut) text += "\n" + entry.Message;
  rtl::Application().MessageBox(text, title, rtl::MB_ICONINFORMATION);
}

}  // namespace

TCompReplaceExpert::TCompReplaceExpert(TWizardFormClass formClass, std::string_view productName,
                                       const qrl::TProductMenu& menu, TComponentReplacer& replacer)
    : FProductName(productName),
      FWizardFormClass(formClass),
      FSelf(std::make_shared<TCompReplaceExpert*>(this)) {
  AddReplacer(replacer);
  const std::string name = SExpertItem + AsComponentName(Options().SourceName) + ProductName();
  TIDEUtils::AddExpertMenuItem(menu, kMenuCaption, name, [self = std::weak_ptr(FSelf)](rtl::TMenuItem&) {
    if (const auto expert = self.lock()) (*expert)->ShowWizard();
  });
}

void CreateWizardForm(TWizardFormClass formClass, std::unique_ptr<TWizardForm>& form) {
  if (!form) form = formClass();
}

void TCompReplaceExpert::ShowWizard() {
  const TFormRelease release;
  CreateWizardForm(FWizardFormClass, WizardForm);
  TWizardForm& form = *WizardForm;
  form.FProductName = ProductName();
  form.FOptions = &Options();
  form.SetWelcomeText(Options().SourceName, ProductName());
  form.rbModeReplace.SetText(rtl::Format(SReplaceComponents, {Options().SourceName}));
  LoadSettings();
  if (form.ShowModal() != rtl::mrOk) return;
  const int index = form.GetReplacerIndex();
  if (index == kRestoreIndex) {
    DoRestore(form.edUndoFile.Text());
  } else {
    DoReplace(GetReplacer(index));
  }
  SaveSettings();
}

void TCompReplaceExpert::LoadSettings() {
  const rtl::TRegIniFile reg(SRegistryRoot, rtl::KEY_READ_WRITE);
  const std::string section = Options().GetTitle();
  Options().Load(reg, section);
  WizardForm->LoadHistory(reg, section);
}

void TCompReplaceExpert::SaveSettings() {
  rtl::TRegIniFile reg(SRegistryRoot, rtl::KEY_READ_WRITE);
  const std::string section = Options().GetTitle();
  Options().Save(reg, section);
  WizardForm->SaveHistory(reg, section);
}

void TCompReplaceExpert::DoReplace(TComponentReplacer& replacer) {
  TReplaceOptions& options = replacer.Options();
  const std::string title = options.GetTitle();
  if (!PrepareBackups(options)) return;
  const bool inProject = options.Dest == sdProject;
  if (inProject && !TIDEUtils::GetProjectFileName().empty() &&
      !ShowSaveWarning(title, /*isProject=*/true, /*isRestore=*/false)) {
    return;
  }
  if (inProject) {
    if (!TIDEUtils::SaveProject()) {
      rtl::Application().MessageBox(std::string(SCannotStartReplace) + "\n" + SProjectNotSaved, title,
                                    rtl::MB_ICONINFORMATION);
      return;
    }
    HideProjectForms();
  }
  const bool replaced = replacer.Replace();
  if (replaced && inProject) ReloadProjectUnits();
  ShowOutcome(replaced, SReplaceSuccess, SReplaceFailed, title);
  if (!replacer.LeftOut().empty()) ShowLeftOut(replacer.LeftOut(), title);
}

// Returns True if the run may use the backup folder in the options, which the user may have changed here.
bool TCompReplaceExpert::PrepareBackups(TReplaceOptions& options) {
  options.Policy = {};
  options.Policy.Strict = true;
  const TWayBack found = options.MakeBackup ? FindWayBack(options.BackupDir) : TWayBack::None;
  if (found == TWayBack::None) return true;
  const EWayBack reason(found, options.BackupDir);
  if (found == TWayBack::Journal || !OnBackupsFound) {
    rtl::Application().MessageBox(reason.what(), options.GetTitle(), rtl::MB_ICONERROR);
    return false;
  }
  const TBackupAnswer answer = OnBackupsFound(reason);
  if (answer == TBackupAnswer::UseNewFolder) options.BackupDir = FreeBackupDir(options.BackupDir);
  options.Policy.OverwriteBackups = answer == TBackupAnswer::Overwrite;
  return answer != TBackupAnswer::Cancel;
}

void TCompReplaceExpert::DoRestore(std::string_view undoFile) {
  const std::string title = Options().GetTitle();
  if (!ShowSaveWarning(title, /*isProject=*/false, /*isRestore=*/true)) return;
  const std::string project = TIDEUtils::GetProjectFileName();
  // If the host refuses to close, restores the files anyway.
  TIDEUtils::CloseProjectGroup();
  const bool restored = GetFirstReplacer().Restore(undoFile);
  ShowOutcome(restored, SRestoreSuccess, SRestoreFailed, title);
  TIDEUtils::OpenProject(project);
}

void TCompReplaceExpert::HideProjectForms() {
  const auto services = TIDEUtils::GetModuleServices();
  const int count = services->GetModuleCount();
  for (int i = 0; i < count; ++i) {
    const TIntf<IOTAModule> module = services->GetModule(i);
    const TIntf<IOTASourceEditor> source = FindSourceEditor(*module);
    if (source && module->GetModuleFileCount() > 1 && IsOfActiveProject(*module))
      CastTo<IOTAEditor>(source)->Show();
  }
}

std::string TCompReplaceExpert::GetIDString() {
  return rtl::Format(SExpertID, {Options().SourceName}) + "." + ProductName();
}

std::string TCompReplaceExpert::GetName() {
  return Options().GetTitle();
}

}  // namespace mig
