// Searches a text for any of a set of words, ignoring the case of ASCII letters. Most files of a run contain
// none of them and are left alone without being tokenised.
//
// The search reads blocks of two bytes and skips bytes that cannot end a word: Sun Wu and Udi Manber, "A Fast
// Algorithm for Multi-Pattern Searching", 1994.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TWordSearch {
 public:
  // Adds a word. A word of fewer than two bytes is found in every text.
  void Add(std::string_view word);
  // Returns True if `text` contains a word, even within a longer one.
  bool FindAny(std::string_view text) const;

 private:
  void FillSteps();

  std::vector<std::string> FWords;
  size_t FShortest = 0;            // bytes of the shortest word
  std::bitset<4096> FFirstBlocks;  // of the words
  std::array<uint8_t, 4096>
      FSteps{};  // by block: the least distance to the end of a word's first FShortest bytes
};

}  // namespace mig
