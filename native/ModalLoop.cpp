#include "native/ModalLoop.h"

namespace native {

namespace {

// Returns false, and leaves the request in the queue, if the program is to end.
bool Handle(HWND dialog, MSG& message) {
  if (message.message == WM_QUIT) {
    PostQuitMessage(static_cast<int>(message.wParam));
    return false;
  }
  if (IsDialogMessageW(dialog, &message) == FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return true;
}

}  // namespace

void RunModal(HWND dialog, HWND owner, const std::function<bool()>& isDone,
              const std::function<void()>& whenIdle) {
  if (owner != nullptr) EnableWindow(owner, FALSE);
  MSG message{};
  while (!isDone()) {
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
      if (!Handle(dialog, message)) break;
      continue;
    }
    whenIdle();
    if (!isDone() && PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE) == FALSE) WaitMessage();
  }
  // Before the dialog disappears, so that the system activates the owner and no other program.
  if (owner != nullptr) EnableWindow(owner, TRUE);
}

void HandlePending(HWND dialog) {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE && Handle(dialog, message)) {
  }
}

}  // namespace native
