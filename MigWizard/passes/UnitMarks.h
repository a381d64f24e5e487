// Decides which parts of a unit have to be read for its findings. The conversion marks the names that matter
// while it scans the unit (UnitPass.h), and most bodies of routines contain none of them.
#pragma once

#include <cstddef>
#include <vector>

#include "MigWizard/passes/NameTable.h"
#include "MigWizard/passes/OldNames.h"
#include "MigWizard/passes/UnitPass.h"
#include "MigWizard/passes/UnitWords.h"

namespace mig {

// Returns the table of names that ConvertUnit marks.
TNameTable MakeUnitNames(const TUnitRules& rules, const TOldNames& oldNames);

struct TUnitParts {
  std::vector<TTextRange> Ranges;  // to read, in the order of the text
  size_t UnreadInterface = 0;      // the end of the interface section if its declarations are not in Ranges
  // The offsets of mapped classes that bring a line, in statements that need not be read.
  std::vector<size_t> LinesInBodies;
};

// `size` is the length of the unit's text. Keeps the uses clauses if one names an old or a new unit, and the
// interface section if something is said about it or if `readsInterface` is set. Of the rest, keeps the
// routines, and of their bodies `begin` and `end`, and everything between them where a name may be a use of
// an old component. If there is no such name in the whole unit, also leaves out routines and declarations
// that nothing is said about.
TUnitParts PartsToRead(size_t size, const TUnitResult& unit, bool readsInterface);

}  // namespace mig
