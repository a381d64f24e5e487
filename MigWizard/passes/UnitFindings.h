// What the conversion of a unit leaves to be done.
#pragma once

#include <string_view>
#include <vector>

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
  const TUnitResult& Result;  // of the conversion of that text
  const TOldNames& OldNames;
};

struct TUnitFindings {
  std::vector<TFinding> Findings;  // with offsets, in working text
  TUnitOutline Outline;
};

// Returns the findings that the unit itself shows, and the outline from which TRunFindings makes the others.
TUnitFindings FindInUnit(const TUnitFindingInput& input, const TTextPlaces& places);

}  // namespace mig
