// Lines of text. A line ends with CR, LF or CR LF.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace rtl {

// Removes the first line from `text` and returns it without its line end:
//
//   while (!text.empty()) Use(rtl::TakeLine(text));
//
// A line end at the end of the text starts no further line.
inline std::string_view TakeLine(std::string_view& text) {
  size_t end = 0;
  while (end < text.size() && text[end] != '\r' && text[end] != '\n') ++end;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end);
  text.remove_prefix(text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1);
  return line;
}

// Converts ascending positions to line numbers, in one pass over the text.
class TLineCounter {
 public:
  // `text` must outlive the counter.
  explicit TLineCounter(std::string_view text) : FText(text) {}

  // Returns the line, from 1, of `position`, which counts bytes from 0 and is not below that of the last
  // call.
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

}  // namespace rtl
