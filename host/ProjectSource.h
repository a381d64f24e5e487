// The source of a project, .dpr or .dpk, as a list of its units: the clauses `uses` and, in a package,
// `contains`.
//
// Nothing is compiled. Of conditional directives all branches count, so that the list holds the units of
// every configuration; comments and directives may stand anywhere.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace host {

// An entry `UnitName in 'Path' {FormName: FormClass}`, in UTF-8.
struct TSourceUnit {
  std::string UnitName;
  std::string Path;      // as written; empty for an entry without one
  std::string FormName;  // empty for an entry without one
  std::string FormClass;
  int Line = 0;  // where the name stands, from 1
};

// The entries in the order of the text. `text` is the working text of the file `fileName`, which messages
// name. Raises EHostError when the text is no project or the clause cannot be read.
std::vector<TSourceUnit> ReadProjectSource(std::string_view text, const qrl::TEncoding& encoding,
                                           std::string_view fileName);

}  // namespace host
