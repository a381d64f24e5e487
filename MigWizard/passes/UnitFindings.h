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
  bool ReadsInterface = false;                // also if nothing is said about it
  TFindingDetail Detail = TFindingDetail::Whole;
};

struct TUnitFindings {
  std::vector<TFinding> Findings;  // with offsets, in working text
  TUnitOutline Outline;
  // If not 0, the outline lacks the declarations of the interface section, which is the text before that
  // offset.
  size_t UnreadInterface = 0;
};

// Returns the findings of the unit itself, and the outline from which TRunFindings derives the others.
TUnitFindings FindInUnit(const TUnitFindingInput& input, const TTextPlaces& places);

// Returns the outline of an interface section, which begins with the beginning of the unit.
TUnitOutline ReadInterface(std::string_view text, const qrl::TEncoding& encoding);

}  // namespace mig
