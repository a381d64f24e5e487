// Line numbers of positions that never go back, in one pass over the text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace host {

class TLineCounter {
 public:
  // `text` must outlive the counter.
  explicit TLineCounter(std::string_view text) : FText(text) {}

  // The line, from 1, of `position`, in bytes from 0 and not below that of the last call. CR, LF and CR LF
  // end lines.
  int LineAt(size_t position) {
    for (const size_t end = std::min(position, FText.size()); FPosition < end; ++FPosition) {
      const char c = FText[FPosition];
      const bool isFirstOfPair = c == '\r' && FPosition + 1 < FText.size() && FText[FPosition + 1] == '\n';
      if (c == '\n' || (c == '\r' && !isFirstOfPair)) ++FLine;
    }
    return FLine;
  }

 private:
  std::string_view FText;
  size_t FPosition = 0;
  int FLine = 1;
};

}  // namespace host
