// The form files that the resource directives of units name.
#pragma once

#include <string>
#include <string_view>

#include "qrl/Encoding.h"

namespace mig {

// Returns the full name of the form file that a resource directive names, or an empty string if it names
// none. `sourceFile` is the unit's Windows path, `encoding` that of its text. Does not check that the file
// exists.
std::string FormFileOfDirective(std::string_view directive, std::string_view sourceFile,
                                const qrl::TEncoding& encoding);

}  // namespace mig
