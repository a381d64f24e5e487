// The menu of the KORVA data-access product.
#pragma once

#include "qrl/QrlMenu.h"

namespace qrl {

// Built on first use, so that no order of initialisation matters.
const TProductMenu& Menu();

}  // namespace qrl
