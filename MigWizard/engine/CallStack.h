// Calls on a new stack, for recursion that may go deeper than the caller's stack allows.
#pragma once

#include <functional>

namespace mig {

// Runs `call` on a stack of its own and returns True when it has returned. An exception of `call` passes
// through. Returns False, without running it, if the system has no further stack.
//
// The stack is that of a new thread, for which the caller waits: nothing runs at the same time, but variables
// of storage class thread_local are others during `call`.
[[nodiscard]] bool CallOnNewStack(const std::function<void()>& call);

}  // namespace mig
