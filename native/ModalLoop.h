// The message loop of a modal window.
#pragma once

#include <functional>

#include "native/WindowsHeaders.h"

namespace native {

// Handles the messages of the thread until `isDone` returns true. Calls `whenIdle` each time before it waits.
// `owner`, if not null, is disabled until then. A request to end the program ends the loop, and stays in the
// queue.
void RunModal(HWND dialog, HWND owner, const std::function<bool()>& isDone,
              const std::function<void()>& whenIdle);

// Handles the messages that are in the queue now, those of `dialog` by the rules of dialogs.
void HandlePending(HWND dialog);

}  // namespace native
