// Converts a unit's source: class names, the uses clauses, class names in comments.
//
// It works on tokens, not on a syntax tree, and is a function of its input: the run driver reads the unit,
// writes the changed text, and looks for the form files that the unit's resource directives name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/NameTable.h"
#include "MigWizard/passes/TextEdits.h"
#include "MigWizard/passes/UnitWords.h"
#include "qrl/Encoding.h"

namespace mig {

struct TUnitRules {
  const TClassMap& Classes;
  std::string_view OldUnit;   // in upper case; NewUnits is inserted after it in a uses clause
  std::string_view NewUnits;  // ", First, Second"
  // Returns the text for an identifier of the map, given the name in the source and the new class. Not used
  // for comments.
  std::function<std::string(std::string_view oldClass, std::string_view newClass)> GetReplacement;
};

// A name or a word of the language that findings depend on.
struct TUnitMark {
  size_t Offset = 0;
  uint32_t Flags = 0;  // as in the table of names
};

struct TUnitResult {
  TTextEdits Edits;
  int Changes = 0;
  std::vector<size_t> LeftOut;  // positions of edits that were removed by choice, in ascending order
  bool NamesNewUnits = false;   // a uses clause names one of the new units
  bool NamesUnits = false;      // a uses clause may name an old or a new unit of the table of names
  std::vector<std::string_view> ResourceDirectives;  // views into the text, in its order: "{$R *.dfm}"
  std::vector<std::string_view> ChangedComments;     // views into the text: those with edits, in its order
  std::vector<TTextRange> UsesClauses;               // from `uses` to the semicolon
  std::vector<TUnitMark> Marks;  // in the order of the text, none of them in a uses clause or a comment
};

// `names`, unless null, is a table by MakeUnitNames. The result has its marks then.
TUnitResult ConvertUnit(std::string_view text, const qrl::TEncoding& encoding, const TUnitRules& rules,
                        const TNameTable* names = nullptr);

}  // namespace mig
