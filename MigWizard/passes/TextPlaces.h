// Lines and columns of offsets in a working text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace mig {

// Both count from 1; columns are in characters.
struct TTextPlace {
  uint32_t Line = 1;
  uint32_t Column = 1;
};

class TTextPlaces {
 public:
  // `text` is working text in `encoding` and outlives the object. Lines end in CR LF, LF or CR.
  TTextPlaces(std::string_view text, const qrl::TEncoding& encoding);

  // Returns the place of the character at `offset`, bytes from 0; an offset past the end counts as the end.
  TTextPlace At(size_t offset) const;
  // Returns the line in which `offset` lies, without its end.
  std::string_view LineAt(size_t offset) const;
  // How many lines end in a bare LF or CR, and how many in CR LF.
  size_t OtherLineEnds() const { return FOtherEnds; }
  size_t WindowsLineEnds() const { return FWindowsEnds; }

 private:
  enum class TCharacters : uint8_t { Bytes, DoubleByte, Utf8 };

  const std::string_view FText;
  TCharacters FCharacters;
  std::vector<size_t> FStarts;  // of the lines
  size_t FOtherEnds = 0, FWindowsEnds = 0;
};

// Offsets in the text that a binary form has in memory, as offsets in the text that is printed of it for people.
// The two differ in white space and in the spelling of strings alone.
class TPrintedForm {
 public:
  // Both texts outlive the object. `offsets` are those to ask for, in ascending order: each at the beginning of a
  // word or of a string.
  TPrintedForm(std::string_view text, std::string_view printed, const qrl::TEncoding& encoding,
               const std::vector<size_t>& offsets);

  // The offsets in the printed text, in the order of the ones in memory.
  const std::vector<size_t>& Offsets() const { return FOffsets; }

 private:
  std::vector<size_t> FOffsets;
};

}  // namespace mig
