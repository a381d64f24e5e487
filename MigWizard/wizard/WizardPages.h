// The wizard's form resource: its pages and controls with their texts, in their initial state.
#pragma once

#include "rtl/forms/Forms.h"

namespace mig {

// The pages by their index in StepsPageControl.
enum TWizardPage : int {
  Step1Sheet,
  Step2RestoreSheet,
  Step2ReplaceSheet,
  Step3ProjSheet,
  Step3DirSheet,
  Step4Sheet,
  FinalStepSheet,
};

extern const rtl::TFormResource kWizardFormResource;

}  // namespace mig
