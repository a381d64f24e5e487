// Completion of uses clauses: a converted unit gets the units of its new classes, and loses the old ones that
// it no longer needs.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace completion {

struct TUsesRules {
  std::string_view OldUnit;       // the unit that the conversion looks for, ignoring case
  std::string_view InsertedText;  // the text that the conversion inserted after it: ", First, Second"
  // Whether an identifier is a new class or exception.
  std::function<bool(std::string_view identifier)> IsNewClass;
  // Whether a unit of a uses clause, with or without its unit scope, is one of the old families whose
  // identifiers are known, and whether it declares an identifier.
  std::function<bool(std::string_view unit)> IsOldUnit;
  std::function<bool(std::string_view identifier, std::string_view unit)> Declares;
  // Whether it may declare an identifier that the text does not declare, judging by the beginning of its name.
  std::function<bool(std::string_view identifier, std::string_view unit)> MayDeclare;
};

enum class TUsesRefusal {
  Source,       // the unit's clauses cannot be completed with certainty
  Conditional,  // an old unit between conditional directives
  Stuck         // a new unit of the implementation's clause that the interface needs; Source follows
};

// Callbacks for the changes that the step refused, and for the units that it removed. `offset` is in the text
// that was passed, in bytes, 0-based; `unit` is spelled as in the text.
struct TUsesCallbacks {
  std::function<void(TUsesRefusal refusal, size_t offset, std::string_view unit)> OnRefused;
  std::function<void(std::string_view unit)> OnRemoved;
};

// Returns `text`, a converted unit or program in working text, with completed uses clauses:
// - if the unit names a new class, or lists the old unit, and lists none of the new units, they are added to the
//   interface's clause if a new class is named there, else in the clause of the old unit, else in that of the
//   implementation. A missing clause is added;
// - new units that only the implementation lists move to the interface if a new class is named there;
// - units of the old families are removed if the unit names none of their identifiers, and none that they may
//   declare;
// - no new unit is listed twice.
// Clauses keep their layout, one a line or several, and their comments. The comments of a removed clause get
// lines of their own. A text that is complete is returned unchanged.
std::string CompleteUses(std::string_view text, const qrl::TEncoding& encoding, const TUsesRules& rules,
                         const TUsesCallbacks& callbacks);

}  // namespace completion
