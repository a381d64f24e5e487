#include "MigWizard/wizard/WizardSteps.h"

namespace mig {

using enum TStepCondition;
using enum TStepAction;

std::span<const TStepRow> NextSteps() {
  static constexpr TStepRow kRows[] = {
      {Step1Sheet, RestoreChosen, None, Step2RestoreSheet},
      {Step1Sheet, Otherwise, None, Step2ReplaceSheet},
      {Step2RestoreSheet, UndoFileExists, FillRestoreSummary, FinalStepSheet},
      {Step2RestoreSheet, Otherwise, RefuseUndoFile, Step2RestoreSheet},
      {Step2ReplaceSheet, ProjectChosen, FillModuleList, Step3ProjSheet},
      {Step2ReplaceSheet, Otherwise, None, Step3DirSheet},
      {Step3ProjSheet, CheckUnitsSelected, SetDefaultBackupDir, Step4Sheet},
      {Step3ProjSheet, Otherwise, None, Step3ProjSheet},
      {Step3DirSheet, DirectoryExists, SetDefaultBackupDir, Step4Sheet},
      {Step3DirSheet, Otherwise, RefuseDirectory, Step3DirSheet},
      {Step4Sheet, Otherwise, FillReplaceSummary, FinalStepSheet},
      {FinalStepSheet, Otherwise, None, FinalStepSheet},
  };
  return kRows;
}

std::span<const TStepRow> PreviousSteps() {
  static constexpr TStepRow kRows[] = {
      {Step1Sheet, Otherwise, None, Step1Sheet},
      {Step2RestoreSheet, Otherwise, None, Step1Sheet},
      {Step2ReplaceSheet, Otherwise, None, Step1Sheet},
      {Step3ProjSheet, Otherwise, None, Step2ReplaceSheet},
      {Step3DirSheet, Otherwise, None, Step2ReplaceSheet},
      {Step4Sheet, ProjectChosen, None, Step3ProjSheet},
      {Step4Sheet, Otherwise, None, Step3DirSheet},
      {FinalStepSheet, RestoreChosen, None, Step2RestoreSheet},
      {FinalStepSheet, Otherwise, None, Step4Sheet},
  };
  return kRows;
}

}  // namespace mig
