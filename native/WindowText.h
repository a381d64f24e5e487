// The texts of windows.
#pragma once

#include <string>
#include <string_view>

#include "native/WindowsHeaders.h"

namespace native {

std::wstring TextOf(HWND window);
// Sets the text of a window, unless it has that text. So a cursor in it keeps its position.
void ShowText(HWND window, std::string_view text);

}  // namespace native
