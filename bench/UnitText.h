// Generates unit source of any size for the benchmarks, in the style of a developer of 1999.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Random.h"

namespace bench {

struct TUnitPlan {
  std::string_view Name;
  size_t Bytes = 0;       // minimum length of the text, exceeded only slightly
  bool Changing = false;  // names classes and the unit that a conversion changes; otherwise nothing changes
  bool Form = false;      // has the directive that names its form
  bool Ibx = false;       // the family of the classes named
};

// Returns the text, with lines ended by CR LF.
[[nodiscard]] std::string MakeUnitText(TRandom& random, const TUnitPlan& plan);

}  // namespace bench
