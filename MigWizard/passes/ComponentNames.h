// Names of components on their way from the form that declares them to the forms that refer to them.
//
// Within a run a name is UTF-8, whatever the encoding of its form. A name in the source code page that does not
// survive the way to UTF-8 and back stays as its bytes; forms in the source code page get it unchanged.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "qrl/Encoding.h"

namespace mig {

// Returns the name for the run. `name` is working text of a form in `encoding`.
std::string NameForRun(std::string_view name, const qrl::TEncoding& encoding);

// Returns the working text of a name of the run for a form in `encoding`, or nullopt if that encoding lacks one
// of its characters.
std::optional<std::string> NameForForm(std::string_view name, const qrl::TEncoding& encoding);

}  // namespace mig
