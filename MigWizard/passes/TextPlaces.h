// Converts offsets in a working text to lines and columns. Ascending offsets are converted in one pass over
// the text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace mig {

// Both are 1-based; columns are in characters.
struct TTextPlace {
  uint32_t Line = 1;
  uint32_t Column = 1;
};

class TTextPlaces {
 public:
  // `text` is working text in `encoding` and must outlive the object. Lines end in CR LF, LF or CR.
  TTextPlaces(std::string_view text, const qrl::TEncoding& encoding);

  // Returns the place of the character at `offset`, in bytes from 0. An offset past the end means the end.
  // The time is proportional to the distance from the offset of the last call, and to the column.
  TTextPlace At(size_t offset) const;
  // Returns the line that contains `offset`, without its line end.
  std::string_view LineAt(size_t offset) const;
  // Returns the number of lines that end in a bare LF or CR.
  size_t OtherLineEnds() const;

 private:
  enum class TCharacters : uint8_t { Bytes, DoubleByte, Utf8 };

  size_t LineEnds(size_t begin, size_t end) const;
  size_t StartOfLine(size_t offset) const;

  const std::string_view FText;
  TCharacters FCharacters;
  // The offset of the last call of At, and the number of line ends before it.
  mutable size_t FOffset = 0, FLineEnds = 0;
};

// Maps offsets in the in-memory text of a binary form to offsets in the text printed from it for people. The
// two differ only in white space and in the spelling of strings.
class TPrintedForm {
 public:
  // Both texts must outlive the object. `offsets` are in ascending order, each at the beginning of a word or
  // of a string.
  TPrintedForm(std::string_view text, std::string_view printed, const qrl::TEncoding& encoding,
               const std::vector<size_t>& offsets);

  // Returns the offsets in the printed text, in the order of `offsets`.
  const std::vector<size_t>& Offsets() const { return FOffsets; }

 private:
  std::vector<size_t> FOffsets;
};

}  // namespace mig
