// TCompReplaceExpert is the expert that the host loads. It adds an item to the product's menu. A click on the
// item shows the wizard and then does the run, together with the steps that the host needs around it: save,
// hide forms, run, reload for a replacement; close, restore, reopen for a restore.
//
// Everything specific to one product is passed in as an argument. The host owns the expert through its
// reference count:
//
//   auto expert = toolsapi::MakeIntf<TCompReplaceExpert>(formClass, "PRODUCT", menu, firstReplacer);
//   expert->AddReplacer(secondReplacer);
//   registerProc(expert);
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/run/Replacer.h"
#include "MigWizard/wizard/Wizard.h"
#include "qrl/QrlMenu.h"
#include "toolsapi/InterfacedObject.h"
#include "toolsapi/ToolsAPI.h"

namespace mig {

class TCompReplaceExpert : public toolsapi::TInterfacedObject<toolsapi::IOTAWizard> {
 public:
  // `formClass` creates the wizard's form. Replacers are not owned and must outlive the expert; all of them
  // share the options of the first. Adds the menu item to the host's main menu. The item is never removed,
  // but does nothing after the expert is destroyed.
  TCompReplaceExpert(TWizardFormClass formClass, std::string_view productName, const qrl::TProductMenu& menu,
                     TComponentReplacer& replacer);

  // Appends a replacer. Its index in the list is the result of the wizard's GetReplacerIndex.
  void AddReplacer(TComponentReplacer& replacer) { FReplacers.push_back(&replacer); }
  TComponentReplacer& GetReplacer(int index) const { return *FReplacers.at(static_cast<size_t>(index)); }
  TComponentReplacer& GetFirstReplacer() const { return GetReplacer(0); }

  // Shows the wizard, does the run that the user chose, and stores the settings. Passes on exceptions of the
  // run; the form is destroyed then, and nothing is stored.
  void ShowWizard();
  // Load and save the settings of the options and of WizardForm in the user's store.
  void LoadSettings();
  void SaveSettings();
  // Do a replacement or a restore with the host's steps before and after it, and show its outcome. Show
  // nothing if the user answers No to a question before the run. Runs are strict (TRunPolicy). An exception
  // of the run is passed on; if the front end can show why it ended, rtl::EAbort is raised instead.
  void DoReplace(TComponentReplacer& replacer);
  void DoRestore(std::string_view undoFile);
  // Shows the source editor of each unit with a form in the active project, which hides the form.
  void HideProjectForms();

  // --- IOTAWizard ---
  void AfterSave() override {}
  void BeforeSave() override {}
  void Destroyed() override {}
  void Modified() override {}
  std::string GetIDString() override;
  std::string GetName() override;
  toolsapi::TWizardState GetState() override { return 0; }
  void Execute() override {}  // the wizard starts from its menu item only

 private:
  bool PrepareRun(TReplaceOptions& options);

  TReplaceOptions& Options() const { return GetFirstReplacer().Options(); }
  std::string ProductName() const { return qrl::RemoveAmpersands(FProductName); }

  std::string FProductName;
  TWizardFormClass FWizardFormClass;
  std::vector<TComponentReplacer*> FReplacers;
  std::shared_ptr<TCompReplaceExpert*> FSelf;  // the menu item holds a weak reference to it
};

// Creates `form` with `formClass`, unless `form` is already set. If `formClass` raises, `form` is null.
void CreateWizardForm(TWizardFormClass formClass, std::unique_ptr<TWizardForm>& form);

}  // namespace mig
