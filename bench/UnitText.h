// Unit source of any size, as a developer of 1999 wrote it, for the benchmarks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Random.h"

namespace bench {

struct TUnitPlan {
  std::string_view Name;
  size_t Bytes = 0;       // the text's length, reached but not much exceeded
  bool Changing = false;  // names classes and the unit that a conversion changes; without it, nothing does
  bool Form = false;      // has the directive that names its form
  bool Ibx = false;       // the family of the classes named
};

// The text, all lines ended by CR LF.
[[nodiscard]] std::string MakeUnitText(TRandom& random, const TUnitPlan& plan);

}  // namespace bench
