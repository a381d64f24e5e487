// Finds what is left to do by hand after the conversion of a form.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/Findings.h"
#include "MigWizard/passes/FormOutline.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/NameTable.h"
#include "MigWizard/passes/OldNames.h"
#include "MigWizard/passes/WordSearch.h"
#include "qrl/Encoding.h"

namespace mig {

// The classes of which objects may have findings: those of the map and the old ones.
struct TFormClasses {
  TWordSearch Words;
  TNameTable Names;
};

struct TFormFindingInput {
  std::string_view Text;
  const qrl::TEncoding& Encoding;
  const TClassMap& Classes;
  const TOldNames& OldNames;
  const TFormClasses& Reported;
  const TFormOutline& Outline;                        // of the conversion of that text
  const std::vector<TObjectConversion>& Conversions;  // of the conversion, and of its completion
  // Returns True if the run knows the alias, but the form's encoding lacks the connection's name.
  std::function<bool(std::string_view alias)> IsUnwritable;
  const std::vector<size_t>& Unread;  // objects that the completion cannot read: offsets of their keywords
  // Returns the inherited connection that declares the alias and is not converted, or an empty string.
  std::function<std::string(std::string_view alias)> InheritedDatabase;
  bool ReplacesClasses = false;  // also those of objects that are not converted
  TFindingDetail Detail = TFindingDetail::Whole;
};

// Returns the findings in the order of the text, with offsets and in working text. Uses `parser` to find the
// reason why an object was not converted.
std::vector<TFinding> FindInForm(const TFormFindingInput& input, TFormParser& parser);

// Returns the number of converted objects by class, in the order of their first appearance.
std::vector<TConvertedClass> CountConverted(const std::vector<TObjectConversion>& conversions);

}  // namespace mig
