#include "native/ApplicationWindow.h"

#include "win/windows/WindowsText.h"

namespace native {

namespace {

constexpr wchar_t kClass[] = L"KvaApplication";

// Passes the focus, which a click on the button in the task bar gives, to the dialog that is open.
LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_SETFOCUS || (message == WM_ACTIVATE && LOWORD(wParam) != WA_INACTIVE)) {
    const HWND dialog = GetLastActivePopup(window);
    if (dialog != window && IsWindowVisible(dialog) != FALSE) {
      SetForegroundWindow(dialog);
      return 0;
    }
  }
  if (message == WM_CLOSE) return 0;  // the dialogs end the program
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

TApplicationWindow::TApplicationWindow(std::string_view title) {
  const HINSTANCE program = GetModuleHandleW(nullptr);
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = WindowProc;
  windowClass.hInstance = program;
  windowClass.hIcon = LoadIconW(program, MAKEINTRESOURCEW(kProgramIcon));
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kClass;
  RegisterClassExW(&windowClass);
  FWindow = CreateWindowExW(0, kClass, win::ToWideOrReplaced(title).c_str(),
                            WS_POPUP | WS_CAPTION | WS_SYSMENU, GetSystemMetrics(SM_CXSCREEN) / 2,
                            GetSystemMetrics(SM_CYSCREEN) / 2, 0, 0, nullptr, nullptr, program, nullptr);
  ShowWindow(FWindow, SW_SHOW);
}

TApplicationWindow::~TApplicationWindow() {
  DestroyWindow(FWindow);
}

HWND TApplicationWindow::Owner() const {
  const HWND active = GetActiveWindow();
  return active != nullptr ? active : GetLastActivePopup(FWindow);
}

}  // namespace native
