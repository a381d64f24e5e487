// The changes to a text as values. The text itself is not modified, and every byte outside the edits is kept.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TTextEdits {
 public:
  // Replaces `length` bytes at `position`, in bytes from 0. Must be called in the order of the text; edits
  // must not overlap.
  void Replace(size_t position, size_t length, std::string replacement);
  bool Empty() const { return FEdits.empty(); }

  struct TEdit {
    size_t Position, Length;
    std::string Replacement;
  };
  // Removes the edits for which `isRemoved`(position) is True, and returns their positions.
  std::vector<size_t> RemoveIf(const std::function<bool(size_t)>& isRemoved);

  // Returns all edits, in the order of the text.
  const std::vector<TEdit>& Edits() const { return FEdits; }

  // Returns True if an edit begins at `position`.
  bool HasAt(size_t position) const;

  // Returns `text`, for which the edits were made, with all edits applied.
  std::string Apply(std::string_view text) const;

 private:
  std::vector<TEdit> FEdits;
};

}  // namespace mig
