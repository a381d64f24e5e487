// Opens the window with a project and files, and prints what it took: one line for each, with the seconds of processor time until it
// is painted, and for a file also the longest step of scrolling through it.
//
//   QT_QPA_PLATFORM=offscreen OpenWindowBench PROJECT [FILE]...
#include <QApplication>
#include <QPixmap>
#include <QScrollBar>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>

#include "desktop/FrontEnd.h"
#include "desktop/HostWindow.h"
#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "win/paths/Drives.h"

namespace {

constexpr int kPages = 100;  // steps of scrolling

// Runs `step` and everything that it leaves for later, paints the window, and returns the seconds of processor
// time.
template <class TStep>
double Seconds(desktop::THostWindow& window, const TStep& step) {
  const std::clock_t start = std::clock();
  step();
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  window.grab();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double LongestScroll(desktop::THostWindow& window) {
  QScrollBar& bar = *window.CurrentEditor()->verticalScrollBar();
  double longest = 0;
  for (int i = 1; i <= kPages; ++i) {
    longest = std::max(longest, Seconds(window, [&] { bar.setValue(bar.maximum() / kPages * i); }));
  }
  return longest;
}

int Measure(int argc, char** argv) {
  QApplication application(argc, argv);
  desktop::TFrontEnd frontEnd("Benchmark");
  desktop::THostWindow window(frontEnd);
  window.show();
  const auto path = [&](int i) { return win::ToWindowsPath(argv[i]); };
  const double project = Seconds(window, [&] { window.OpenProject(path(1)); });
  std::printf("%.3f %s\n", project, argv[1]);
  for (int i = 2; i < argc; ++i) {
    const double file = Seconds(window, [&] { window.OpenFile(path(i)); });
    std::printf("%.3f %.3f %s\n", file, LongestScroll(window), argv[i]);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Measure(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "OpenWindowBench: %s\n", error.what());
    return 1;
  }
}
