// The wizard as the user sees it: a third mode, for the second family of components.
#pragma once

#include <memory>

#include "MigWizard/wizard/Wizard.h"

namespace target {

class TKVAWizardForm : public mig::TWizardForm {
 public:
  TKVAWizardForm();

  // The index of the replacer: 0 for BDE, 1 for IBX; mig::kRestoreIndex for a restore.
  int GetReplacerIndex() const override;

  void FormShow();  // published, in place of the inherited one

  rtl::TRadioButton& rbModeReplaceIBX;
};

// The class of the form, for the expert.
std::unique_ptr<mig::TWizardForm> NewKVAWizardForm();

}  // namespace target
