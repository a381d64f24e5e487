// The window that owns all others of the program. It has no area, but a button in the task bar, and it keeps
// the program active between two dialogs.
#pragma once

#include <string_view>

#include "native/WindowsHeaders.h"

namespace native {

class TApplicationWindow {
 public:
  explicit TApplicationWindow(std::string_view title);
  ~TApplicationWindow();
  TApplicationWindow(const TApplicationWindow&) = delete;
  TApplicationWindow& operator=(const TApplicationWindow&) = delete;

  HWND Window() const { return FWindow; }
  // Returns the owner for a new dialog: the program's active window, or else this one.
  HWND Owner() const;

 private:
  HWND FWindow;
};

// The program's icon among its resources.
inline constexpr int kProgramIcon = 1;

}  // namespace native
