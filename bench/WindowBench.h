// The main function of a benchmark of the host's window.
//
//   int main(int argc, char** argv) { return bench::Run("OpenWindowBench", argc, argv, Measure); }
#pragma once

#include <functional>

namespace desktop {
class TFrontEnd;
}

namespace bench {

// Calls `measure` within an application, and returns the exit status: 0, or 1 after a message that begins
// with `name` on standard error if `measure` raised an exception.
int Run(const char* name, int argc, char** argv, const std::function<void(desktop::TFrontEnd&)>& measure);

}  // namespace bench
