// The catalogue that the option --catalogue names.
#pragma once

#include <string>

#include "target/Catalogue.h"

namespace cli {

// Returns the catalogue in the file `typed`, or the built-in one if that is empty. Raises the exceptions of
// TFileStream and of the catalogue.
target::TCatalogue LoadCatalogue(const std::string& typed);

}  // namespace cli
