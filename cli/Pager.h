// The program that shows long output page by page.
#pragma once

#include <string_view>

namespace cli {

// $PAGER, or `less`, or `cat` if there is no such program; none if $PAGER is empty. On Windows there is none:
// consoles scroll.
class TPager {
 public:
  TPager() = default;
  ~TPager() { Finish(); }
  TPager(const TPager&) = delete;
  TPager& operator=(const TPager&) = delete;

  // Starts the pager unless it was started before. Returns false if there is none.
  bool Start();

  // Waits until the user has closed the pager, if it was started.
  void Finish();

  // Writes to the pager. Does nothing if the user has closed it.
  void Write(std::string_view text);

 private:
  int FPipe = -1;  // to the pager, -1 if there is none
  int FProcess = -1;
};

}  // namespace cli
