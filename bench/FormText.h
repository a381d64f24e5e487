// Form text of any size, as the designer of 1999 writes it, for the benchmarks.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Random.h"

namespace bench {

enum class TFormShape {
  Mixed,  // controls between database components of every kind
  Lists   // nearly all of the text stands in the SQL lists of queries
};

struct TFormPlan {
  std::string_view Name;  // of the root object; its class is T and the name
  size_t Bytes = 0;       // the text's length, reached but not much exceeded
  size_t Objects = 0;     // components of classes that a conversion changes, spread evenly
  TFormShape Shape = TFormShape::Mixed;
  bool Ibx = false;  // the family of those components
};

// The text, all lines ended by CR LF. Every one of the plan's objects is well formed.
[[nodiscard]] std::string MakeFormText(TRandom& random, const TFormPlan& plan);

}  // namespace bench
