// The arguments of a run, which its replacer sets.
#pragma once

#include <vector>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunHooks.h"
#include "MigWizard/run/RunSelection.h"
#include "MigWizard/run/UndoState.h"

namespace mig {

// Everything must outlive the run.
struct TRunContext {
  const TReplaceOptions& Options;
  const TRunHooks& Hooks;
  TRunLock& Lock;
  TLogWriter& Log;
  TFileConverter& Converter;       // for the walk
  TFileConverter& OtherConverter;  // for the worker, at the same time
  std::vector<TLeftOut>& LeftOut;  // receives the files that the run leaves out
  const TRunSelection* Selection;  // null: everything
  TRunPlan* Plan = nullptr;        // unless null, receives the files and their edits
};

}  // namespace mig
