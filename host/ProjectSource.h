// The units that the source of a project, .dpr or .dpk, lists in its clauses `uses` and, in a package,
// `contains`.
//
// Nothing is compiled. All branches of conditional directives count, so the list holds the units of every
// configuration. Comments and directives are allowed anywhere.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace host {

// An entry `UnitName in 'Path' {FormName: FormClass}`, in UTF-8.
struct TSourceUnit {
  std::string UnitName;
  std::string Path;      // as written; empty for an entry without a path
  std::string FormName;  // empty for an entry without a form
  std::string FormClass;
  int Line = 0;  // of the unit's name, from 1
};

// Returns the entries in the order of the text. `text` is the working text of the file `fileName`, which
// messages name. Raises EHostError if the text is no project or a clause cannot be read.
std::vector<TSourceUnit> ReadProjectSource(std::string_view text, const qrl::TEncoding& encoding,
                                           std::string_view fileName);

}  // namespace host
