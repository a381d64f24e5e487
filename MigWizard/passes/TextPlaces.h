// Converts offsets in a working text to lines and columns. The text is read only as far as it is asked for.
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
  TTextPlace At(size_t offset) const;
  // Returns the line that contains `offset`, without its line end.
  std::string_view LineAt(size_t offset) const;
  // Returns the number of lines; a text that ends with a line end has an empty last line.
  size_t Lines() const {
    ReadTo(FText.size());
    return FStarts.size();
  }
  // Returns the line with that index, from 0, without its line end.
  std::string_view Line(size_t index) const {
    ReadTo(FText.size());
    return LineAt(FStarts[index]);
  }
  // Return the number of lines that end in a bare LF or CR, and of those that end in CR LF.
  size_t OtherLineEnds() const {
    ReadTo(FText.size());
    return FOtherEnds;
  }
  size_t WindowsLineEnds() const {
    ReadTo(FText.size());
    return FWindowsEnds;
  }

 private:
  enum class TCharacters : uint8_t { Bytes, DoubleByte, Utf8 };

  void ReadTo(size_t offset) const;

  const std::string_view FText;
  TCharacters FCharacters;
  // As far as the text has been read, which is up to the last start.
  mutable std::vector<size_t> FStarts{0};  // of the lines
  mutable size_t FNextFeed = 0;            // offset of the next LF, or the end of the text
  mutable bool FIsFeedKnown = false;       // and FHasBareReturns
  mutable bool FHasBareReturns = false;    // a CR without an LF after it
  mutable bool FIsRead = false;            // the last line has no end
  mutable size_t FOtherEnds = 0, FWindowsEnds = 0;
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
