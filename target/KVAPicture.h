// The picture of this product's wizard: a drawing of the migration.
#pragma once

#include "rtl/forms/Picture.h"

namespace target {

// Returns a picture of 120 by 260 device-independent pixels.
rtl::TPicture KVAPicture();

}  // namespace target
