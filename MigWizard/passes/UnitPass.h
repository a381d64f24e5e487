// The conversion of a unit's source: class names, the uses clause, class names in comments.
//
// It works on tokens, not on a syntax tree, and is a function of its input: the run driver reads the unit,
// writes what changed, and looks for the form files that the unit's resource directives name.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/TextEdits.h"
#include "qrl/Encoding.h"

namespace mig {

struct TUnitRules {
  const TClassMap& Classes;
  std::string_view OldUnit;   // in upper case; in a uses clause NewUnits goes behind it
  std::string_view NewUnits;  // ", First, Second"
  // The text for an identifier that the map knows, from the name in the source and the new class. Not for
  // comments.
  std::function<std::string(std::string_view oldClass, std::string_view newClass)> GetReplacement;
};

struct TUnitResult {
  TTextEdits Edits;
  int Changes = 0;
  bool NamesNewUnits = false;                        // a uses clause names one of the new units
  std::vector<std::string_view> ResourceDirectives;  // views into the text, in its order: "{$R *.dfm}"
};

TUnitResult ConvertUnit(std::string_view text, const qrl::TEncoding& encoding, const TUnitRules& rules);

// The full name of the form file that a resource directive names, or empty if it names none. `sourceFile` is
// the unit's Windows path, `encoding` that of its text. Whether there is such a file is not asked.
std::string FormFileOfDirective(std::string_view directive, std::string_view sourceFile,
                                const qrl::TEncoding& encoding);

}  // namespace mig
