// The progress line of a long command: files done of files known, and the present file's name, on standard
// error. Nothing is written where that is not a terminal.
#pragma once

#include <chrono>
#include <string_view>

namespace cli {

class TProgressLine {
 public:
  TProgressLine();
  ~TProgressLine() { Clear(); }
  TProgressLine(const TProgressLine&) = delete;
  TProgressLine& operator=(const TProgressLine&) = delete;

  // Shows the line anew, at most twenty times a second.
  void Show(int done, int known, std::string_view fileName);
  // Takes the line away, so that other text can be written.
  void Clear();

 private:
  bool FIsTerminal;
  bool FShown = false;
  std::chrono::steady_clock::time_point FLastShown;
};

}  // namespace cli
