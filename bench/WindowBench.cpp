#include "WindowBench.h"

#include <QApplication>
#include <cstdio>
#include <exception>

#include "desktop/FrontEnd.h"

namespace bench {

int Run(const char* name, int argc, char** argv, const std::function<void(desktop::TFrontEnd&)>& measure) {
  try {
    QApplication application(argc, argv);
    desktop::TFrontEnd frontEnd("Benchmark");
    measure(frontEnd);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", name, error.what());
    return 1;
  }
}

}  // namespace bench
