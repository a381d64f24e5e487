// The menu of the KORVA data-access product.
#pragma once

#include "qrl/QrlMenu.h"

namespace qrl {

// Returns the menu, which lives as long as the program.
const TProductMenu& Menu();

}  // namespace qrl
