// The changes to a text as values: what stands where is replaced by what. The text itself is not touched, and
// whatever no edit names comes out byte for byte.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TTextEdits {
 public:
  // Replaces `length` bytes at `position` (bytes, from 0). Edits come in the order of the text and do not
  // overlap.
  void Replace(size_t position, size_t length, std::string replacement);
  bool Empty() const { return FEdits.empty(); }

  struct TEdit {
    size_t Position, Length;
    std::string Replacement;
  };
  // All edits, in the order of the text.
  const std::vector<TEdit>& Edits() const { return FEdits; }

  // `text`, the one that the edits were made for, with all edits.
  std::string Apply(std::string_view text) const;

 private:
  std::vector<TEdit> FEdits;
};

}  // namespace mig
