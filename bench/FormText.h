// Generates form text of any size for the benchmarks, in the style of the designer of 1999.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Random.h"

namespace bench {

enum class TFormShape {
  Mixed,  // controls between database components of every kind
  Lists   // most of the text is in the SQL lists of queries
};

struct TFormPlan {
  std::string_view Name;  // of the root object; its class is "T" followed by the name
  size_t Bytes = 0;       // minimum length of the text, exceeded only slightly
  size_t Objects = 0;     // components of classes that a conversion changes, spread evenly
  TFormShape Shape = TFormShape::Mixed;
  bool Ibx = false;  // the family of those components
};

// Returns the text, with lines ended by CR LF. All objects are well-formed.
[[nodiscard]] std::string MakeFormText(TRandom& random, const TFormPlan& plan);

}  // namespace bench
