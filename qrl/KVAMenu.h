// The menu of the KORVA data-access product.
#pragma once

#include "qrl/QrlMenu.h"

namespace qrl {

// Returns the same object for the program's whole life.
const TProductMenu& Menu();

}  // namespace qrl
