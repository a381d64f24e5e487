// Converts names of components between the form that declares them and the forms that refer to them.
//
// Within a run a name is UTF-8, whatever the encoding of its form. A name in the source code page that cannot
// be converted to UTF-8 and back keeps its bytes; forms in the source code page get it unchanged.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "qrl/Encoding.h"

namespace mig {

// Returns `name`, which is working text of a form in `encoding`, as a name of the run.
std::string NameForRun(std::string_view name, const qrl::TEncoding& encoding);

// Returns the working text of a name of the run for a form in `encoding`, or nullopt if that encoding cannot
// represent one of its characters.
std::optional<std::string> NameForForm(std::string_view name, const qrl::TEncoding& encoding);

}  // namespace mig
