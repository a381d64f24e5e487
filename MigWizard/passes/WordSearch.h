// Whether any of some words stands in a text, ignoring the case of ASCII letters: most files of a run can be
// told so to stay as they are, before a token of them is made.
//
// The text is looked at in blocks of two bytes, and what cannot end a word is stepped over: Sun Wu and Udi
// Manber, "A Fast Algorithm for Multi-Pattern Searching", 1994.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TWordSearch {
 public:
  // A word of one byte, or none, is found in every text.
  void Add(std::string_view word);
  // True also where a word stands within a longer one.
  bool FindAny(std::string_view text) const;

 private:
  void FillSteps();

  std::vector<std::string> FWords;
  size_t FShortest = 0;  // bytes of the shortest word
  std::array<uint8_t, 4096>
      FSteps{};  // by block: how far the end of a word's first FShortest bytes is away at least
};

}  // namespace mig
