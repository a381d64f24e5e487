// The product's wizard: adds a third mode, for the second family of components.
#pragma once

#include <memory>

#include "MigWizard/wizard/Wizard.h"

namespace target {

class TKVAWizardForm : public mig::TWizardForm {
 public:
  TKVAWizardForm();

  // Returns the index of the replacer: 0 for BDE, 1 for IBX; mig::kRestoreIndex for a restore.
  int GetReplacerIndex() const override;

  void FormShow();  // published; replaces the inherited one

  rtl::TRadioButton& rbModeReplaceIBX;
};

// Creates the form. The expert uses it as the class of the form.
std::unique_ptr<mig::TWizardForm> NewKVAWizardForm();

}  // namespace target
