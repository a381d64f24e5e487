// The transitions between the pages of the wizard, as tables.
#pragma once

#include <span>

#include "MigWizard/wizard/WizardPages.h"

namespace mig {

enum class TStepCondition {
  Otherwise,  // always holds
  RestoreChosen,
  ProjectChosen,
  UndoFileExists,
  DirectoryExists,
  CheckUnitsSelected,  // tells the user if no unit is marked
};

enum class TStepAction {
  None,
  FillModuleList,
  SetDefaultBackupDir,
  FillRestoreSummary,
  FillReplaceSummary,
  RefuseUndoFile,
  RefuseDirectory,
};

// The first row of the active page whose condition holds is executed: the action, and then the next page.
struct TStepRow {
  TWizardPage Page;
  TStepCondition Condition;
  TStepAction Action;
  TWizardPage Next;
};

// The rows of the buttons Next and Back. Each page has a row whose condition always holds.
std::span<const TStepRow> NextSteps();
std::span<const TStepRow> PreviousSteps();

}  // namespace mig
