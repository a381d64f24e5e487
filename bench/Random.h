// Random numbers for the generated trees: splitmix64, so that a seed gives the same bytes on every machine,
// compiler and library. Not for secrets or statistics.
#pragma once

#include <cstddef>
#include <cstdint>

namespace bench {

class TRandom {
 public:
  explicit TRandom(uint64_t seed) : FState(seed) {}

  uint64_t Next() {
    uint64_t z = (FState += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }

  // Returns a number from 0 to limit - 1. `limit` must not be 0. The bias of the remainder does not matter
  // here.
  size_t Below(size_t limit) { return static_cast<size_t>(Next() % limit); }

  // Returns a number from `low` to `high`, both included.
  size_t Between(size_t low, size_t high) { return low + Below(high - low + 1); }

  bool Percent(size_t chance) { return Below(100) < chance; }

  template <size_t N>
  const char* Pick(const char* const (&items)[N]) {
    return items[Below(N)];
  }

 private:
  uint64_t FState;
};

}  // namespace bench
