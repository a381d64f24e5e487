// Finds what is left to do by hand after the conversion of a unit.
#pragma once

#include <string_view>
#include <vector>

#include "MigWizard/passes/FileCompletion.h"
#include "MigWizard/passes/Findings.h"
#include "MigWizard/passes/OldNames.h"
#include "MigWizard/passes/TextPlaces.h"
#include "MigWizard/passes/UnitOutline.h"
#include "MigWizard/passes/UnitPass.h"

namespace mig {

struct TUnitFindingInput {
  std::string_view Text;
  const qrl::TEncoding& Encoding;
  const TUnitRules& Rules;
  const TUnitResult& Result;  // of the conversion of that text, with marks
  const TOldNames& OldNames;
  const TNameTable& Names;                    // of MakeUnitNames
  const TCompletedUnit* Completed = nullptr;  // null without a completion
};

struct TUnitFindings {
  std::vector<TFinding> Findings;  // with offsets, in working text
  TUnitOutline Outline;
};

// Returns the findings of the unit itself, and the outline from which TRunFindings derives the others.
TUnitFindings FindInUnit(const TUnitFindingInput& input, const TTextPlaces& places);

}  // namespace mig
