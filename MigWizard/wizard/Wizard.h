// The dialog in which the user chooses what a run does: replace or restore, the open project or a disk
// folder, which units, where the backup goes, whether there is a log. It changes no file. On Finish it stores
// its state in the options and closes; the expert does the run.
//
//   TWizardForm form;
//   form.FProductName = "PRODUCT";
//   form.FOptions = &options;
//   form.SetWelcomeText(options.SourceName, form.FProductName);
//   form.LoadHistory(settings, section);
//   if (form.ShowModal() == rtl::mrOk) {
//     form.SaveHistory(settings, section);
//     return form.GetReplacerIndex();  // kRestoreIndex: restore from form.edUndoFile.Text()
//   }
//
// The form is a stack of seven pages with Back and Next. Its behaviour depends only on the active page and
// the values of its controls, not on how they are drawn. It has one replace mode; a product's form adds
// further ones.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/wizard/WizardPages.h"
#include "MigWizard/wizard/WizardSteps.h"
#include "rtl/forms/Forms.h"

namespace rtl {
class TRegIniFile;
}

namespace mig {

// The result of GetReplacerIndex for a restore.
inline constexpr int kRestoreIndex = 100;

class TWizardForm : public rtl::TForm {
 public:
  explicit TWizardForm(const rtl::TFormResource& derived = {});

  // Returns the choice made with Finish: the index of the replacer to run, or kRestoreIndex.
  virtual int GetReplacerIndex() const;
  virtual void SetWelcomeText(std::string_view sourceName, std::string_view productName);

  // Load and save the form's own settings: position, histories, mode, last undo file.
  void LoadHistory(const rtl::TRegIniFile& reg, std::string_view section);
  void SaveHistory(rtl::TRegIniFile& reg, std::string_view section) const;

  TWizardPage ActivePage() const { return static_cast<TWizardPage>(StepsPageControl.ActivePageIndex()); }
  int GetCurrentStep() const;
  int GetStepCount() const;
  void NextStep();
  void PreviousStep();

  // Returns the full name of the backup folder. An entry without a drive is relative to the project's or the
  // target folder.
  std::string GetBackupDir() const;

  // --- Published handlers. Each can also be called by its name. ---
  void FormShow();
  void FormClose();
  void rbModeReplaceClick();
  void btRestoreBrowseClick();
  void btSelectClick();
  void btDeselectClick();
  void btBrowseFolderClick();
  void btBrowseBackFolderClick();
  void cbBackupDirChange();
  void actNextExecute();
  void actBackExecute();
  void actFinishExecute();
  void actMakeBackupExecute() {}  // the check box changes its own state
  void actWriteLogExecute() {}
  void actNextUpdate();
  void actBackUpdate();
  void actFinishUpdate();
  void actMakeBackupUpdate();
  void actWriteLogUpdate();

  // --- Accessed by the expert. ---
  std::string FProjectFile;             // full Windows path of the active project; empty without one
  std::string FProductName;             // without accelerator marks; set before the form is shown
  TReplaceOptions* FOptions = nullptr;  // filled on Finish; not owned; set before the form is shown
  bool FBackupDirChanged = false;       // the user has changed cbBackupDir

  // --- Controls that hold state. ---
  rtl::TPageControl& StepsPageControl;
  rtl::TLabel& Label2;
  rtl::TRadioButton& rbModeReplace;
  rtl::TRadioButton& rbModeRestore;
  rtl::TEdit& edUndoFile;
  rtl::TRadioButton& rbDestProject;
  rtl::TRadioButton& rbDestFolder;
  rtl::TCheckListBox& lbModules;
  rtl::TComboBox& cbDirectory;
  rtl::TCheckBox& chSubDirs;
  rtl::TCheckBox& chMakeBackup;
  rtl::TLabel& lBackupFolder;
  rtl::TComboBox& cbBackupDir;
  rtl::TButton& btBrowseBackFolder;
  rtl::TCheckBox& chWriteLog;
  rtl::TLabel& lblLogNote;
  rtl::TCheckBox& chViewLog;
  rtl::TLabel& lSummary;
  rtl::TAction& actNext;
  rtl::TAction& actBack;
  rtl::TAction& actFinish;

 private:
  void PublishHandlers();
  void UpdateCaption();
  std::string BaseFolder() const;

  void Walk(std::span<const TStepRow> rows);
  bool Holds(TStepCondition condition) const;
  void Perform(TStepAction action);
  bool RestoreChosen() const { return rbModeRestore.Checked(); }
  bool ProjectChosen() const { return rbDestProject.Checked(); }
  // Tells the user if no unit is marked.
  bool CheckUnitsSelected() const;
  void FillModuleList();
  void SetDefaultBackupDir();
  // Shows a message about the text of `entry`, and moves the focus there.
  void Refuse(std::string_view message, rtl::TControl& entry) const;
};

// Creates a form of a class.
using TWizardFormClass = std::unique_ptr<TWizardForm> (*)();

// The form, or null if there is none.
extern std::unique_ptr<TWizardForm> WizardForm;

}  // namespace mig
