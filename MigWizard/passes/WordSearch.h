// Searches a text for any of a set of words, ignoring the case of ASCII letters. Most files of a run contain
// none of them and are left alone without being tokenised.
//
// The search reads blocks of three bytes and skips bytes that cannot end a word: Sun Wu and Udi Manber, "A
// Fast Algorithm for Multi-Pattern Searching", 1994.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TWordSearch {
 public:
  // Adds a word. A word of fewer than three bytes is found in every text.
  void Add(std::string_view word);
  // Returns True if `text` contains a word, even within a longer one.
  bool FindAny(std::string_view text) const;

 private:
  uint8_t StepAfter(size_t index) const;
  void FillSteps(std::string_view word);

  std::vector<std::string> FWords;
  size_t FShortest = 0;           // bytes of the shortest word
  std::bitset<4096> FBeginnings;  // hashes of the first FShortest bytes of the words
  // By the hash of a block: the least distance to the end of a word's first FShortest bytes. Empty as long as
  // there is no word, or one shorter than a block.
  std::vector<uint8_t> FSteps;
};

}  // namespace mig
