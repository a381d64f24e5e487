// Completion of uses clauses: a converted unit gets the units of its new classes, and loses the old ones that it no
// longer needs.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace completion {

struct TUsesRules {
  std::string_view OldUnit;       // the unit that the conversion looks for, ignoring case
  std::string_view InsertedText;  // what the conversion inserted after it: ", First, Second"
  // Whether an identifier is a new class or exception.
  std::function<bool(std::string_view identifier)> IsNewClass;
  // The identifiers that a unit of the old families declares, in lower case; null for any other unit. A unit with
  // an empty list stays. `unit` comes without its unit scope.
  std::function<const std::vector<std::string>*(std::string_view unit)> OldIdentifiers;
};

// What the step could not do. `offset` is in the text that was given, in bytes, 0-based.
enum class TUsesRefusal {
  Source,      // the unit's clauses cannot be told for certain
  Conditional  // an old unit between conditional directives
};
using TTellRefusal = std::function<void(TUsesRefusal refusal, size_t offset, std::string_view unit)>;

// Returns `text`, a converted unit or program in working text, with completed uses clauses:
// - where the unit names a new class, or has the old unit, and lists none of the new units, they are listed in the
//   interface's clause if a new class is named there, else in the clause of the old unit, else in that of the
//   implementation. A missing clause is made;
// - units of the old families of which no identifier is left in the unit are taken out;
// - no new unit is listed twice.
// Clauses keep their layout, one a line or several, and their comments. A text that is complete comes back as it is.
std::string CompleteUses(std::string_view text, const qrl::TEncoding& encoding, const TUsesRules& rules,
                         const TTellRefusal& tell);

}  // namespace completion
