#include "native/WindowText.h"

#include "win/windows/WindowsText.h"

namespace native {

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

void ShowText(HWND window, std::string_view text) {
  const std::wstring wide = win::ToWideOrReplaced(text);
  if (TextOf(window) != wide) SetWindowTextW(window, wide.c_str());
}

}  // namespace native
