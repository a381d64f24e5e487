// TCompReplaceExpert: what the host loads. It puts an item into the product's menu; a click there shows the
// wizard and then wraps the run in what the host has to do around it: save, hide forms, run, reload; or
// close, restore, reopen.
//
// Everything that belongs to one product comes in as an argument. The host owns the expert through its
// reference count:
//
//   auto expert = toolsapi::MakeIntf<TCompReplaceExpert>(formClass, "PRODUCT", menu, firstReplacer);
//   expert->AddReplacer(secondReplacer);
//   registerProc(expert);
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/run/Replacer.h"
#include "MigWizard/run/WayBack.h"
#include "MigWizard/wizard/Wizard.h"
#include "qrl/QrlMenu.h"
#include "toolsapi/InterfacedObject.h"
#include "toolsapi/ToolsAPI.h"

namespace mig {

// What to do about a backup folder that holds the undo file of an earlier run.
enum class TBackupAnswer { Cancel, UseNewFolder, Overwrite };

class TCompReplaceExpert : public toolsapi::TInterfacedObject<toolsapi::IOTAWizard> {
 public:
  // `formClass` makes the wizard's form. Replacers are not owned, and outlive the expert; all of them share
  // the options of the first. The menu item is in the host's main menu when this returns, and nothing here
  // takes it out again: it does nothing once the expert is gone.
  TCompReplaceExpert(TWizardFormClass formClass, std::string_view productName, const qrl::TProductMenu& menu,
                     TComponentReplacer& replacer);

  // Asks the user after Finish; `found` says what the backup folder holds, in a sentence for the user. Not called
  // for a journal, which has to be restored first. Unset: the run is refused with that sentence.
  std::function<TBackupAnswer(const EWayBack& found)> OnBackupsFound;

  // At the end of the list; the index is what the wizard's GetReplacerIndex means.
  void AddReplacer(TComponentReplacer& replacer) { FReplacers.push_back(&replacer); }
  TComponentReplacer& GetReplacer(int index) const { return *FReplacers.at(static_cast<size_t>(index)); }
  TComponentReplacer& GetFirstReplacer() const { return GetReplacer(0); }

  // One use of the wizard, from the click to the stored settings. Exceptions of a run pass through; the form
  // is gone then, and nothing is stored.
  void ShowWizard();
  // The settings of the options and of WizardForm, from and to the user's store.
  void LoadSettings();
  void SaveSettings();
  // A run and a restore, with what the host does before and after them, and the message of the outcome. The
  // user's No to the question before them ends them without a message. Runs are strict (TRunPolicy).
  void DoReplace(TComponentReplacer& replacer);
  void DoRestore(std::string_view undoFile);
  // Brings the source editors of the active project's units with forms to the front, so that no form is seen.
  void HideProjectForms();

  // --- IOTAWizard ---
  void AfterSave() override {}
  void BeforeSave() override {}
  void Destroyed() override {}
  void Modified() override {}
  std::string GetIDString() override;
  std::string GetName() override;
  toolsapi::TWizardState GetState() override { return 0; }
  void Execute() override {}  // the wizard starts through its menu item alone

 private:
  bool PrepareBackups(TReplaceOptions& options);

  TReplaceOptions& Options() const { return GetFirstReplacer().Options(); }
  std::string ProductName() const { return qrl::RemoveAmpersands(FProductName); }

  std::string FProductName;
  TWizardFormClass FWizardFormClass;
  std::vector<TComponentReplacer*> FReplacers;
  std::shared_ptr<TCompReplaceExpert*> FSelf;  // the menu item holds it weakly
};

// Makes `form` through the class reference, unless there is one. After an exception of the class `form` is
// nothing.
void CreateWizardForm(TWizardFormClass formClass, std::unique_ptr<TWizardForm>& form);

}  // namespace mig
