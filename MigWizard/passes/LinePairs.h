// Pairs the lines of a text with those of the same text after a change.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/TextPlaces.h"

namespace mig {

class TLinePairs {
 public:
  // Both are working text in `encoding`, and must outlive the object.
  TLinePairs(std::string_view before, std::string_view after, const qrl::TEncoding& encoding);

  // Returns the replacement of the lines that have bytes of `before` from `begin` to before `end`,
  // without the last line end. It is empty if they were removed.
  std::string After(size_t begin, size_t end) const;

 private:
  struct TRange {
    size_t First, End;  // indices of lines after the change
  };
  void Pair(size_t first, size_t countBefore, size_t countAfter);

  const TTextPlaces FPlaces;                            // of the text before the change
  const std::vector<std::string_view> FBefore, FAfter;  // the lines, without their ends
  std::vector<TRange> FRanges;                          // by the index of the line before the change
};

}  // namespace mig
