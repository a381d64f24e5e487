// Checks that must hold for every input of a fuzz target.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace fuzz {

// Prints the broken condition and ends the process, so that the fuzzer keeps the input.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Does not hold: %s\n", what);
  std::abort();
}

}  // namespace fuzz
