// Lets a process that waits for input notice a request to stop.
#pragma once

namespace cli {

// Returns a descriptor that is readable from the first signal on that CatchInterrupts recorded, or -1 before
// CatchInterrupts was called. A signal that arrives between a check and a blocking call is not lost this way:
// poll the descriptor together with the input. (The self-pipe trick of D. J. Bernstein.) Do not read
// from it, nor close it.
int InterruptPipe();

}  // namespace cli
