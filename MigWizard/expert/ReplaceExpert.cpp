#include "MigWizard/expert/ReplaceExpert.h"

#include <algorithm>

#include "MigWizard/expert/GuidedRun.h"
#include "MigWizard/expert/RunQuestions.h"
#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/wizard/SaveWarn.h"
#include "rtl/forms/Application.h"
#include "rtl/text/Registry.h"
#include "rtl/text/StringList.h"
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

// Returns the existing units of the project that are selected for the run, or not.
int CountUnits() {
  int units = 0;
  const int count = TIDEUtils::GetModuleCount();
  for (int i = 0; i < count; ++i) units += IsUnitModule(TIDEUtils::GetModuleFileName(i)) ? 1 : 0;
  return units;
}

// Returns the missing files of the project that a run with these options would convert. A selection of some
// units does not concern the others.
std::vector<std::string> MissingFilesOf(const TReplaceOptions& options) {
  rtl::TStringList selected;
  selected.SetText(options.UnitNames);
  if (options.Dest != sdProject || selected.Count() < CountUnits()) return {};
  return TIDEUtils::GetMissingFiles();
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
  if (!PrepareRun(options)) return;
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
  ReplaceInteractively(replacer, [inProject] {
    if (inProject) ReloadProjectUnits();
  });
}

// Asks whether the run may start, with the options as the user may have changed them here.
bool TCompReplaceExpert::PrepareRun(TReplaceOptions& options) {
  options.Policy = {};
  options.Policy.Strict = true;
  if (!AskAboutMissingFiles(MissingFilesOf(options), options.GetTitle())) return false;
  const std::string base =
      options.Dest == sdProject ? rtl::ExtractFileDir(TIDEUtils::GetProjectFileName()) : options.Directory;
  std::string journal;
  const TBackupAnswer answer = AskAboutBackups(options, base, journal);
  if (answer == TBackupAnswer::RestoreJournal) DoRestore(journal);
  // The form stores the undo file of this run as the last one.
  if (answer == TBackupAnswer::Run && WizardForm && WizardForm->GetBackupDir() != options.BackupDir)
    WizardForm->cbBackupDir.SetText(options.BackupDir);
  return answer == TBackupAnswer::Run;
}

void TCompReplaceExpert::DoRestore(std::string_view undoFile) {
  RestoreInteractively(GetFirstReplacer(), undoFile);
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
