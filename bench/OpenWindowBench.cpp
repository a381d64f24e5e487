// Opens the window with a project and files, and prints what it took, one line for each in seconds: the
// processor time until it is painted, and the longest that the window did not answer meanwhile; for a file
// also the longest step of scrolling through it.
//
//   QT_QPA_PLATFORM=offscreen OpenWindowBench PROJECT [FILE]...
#include <QCoreApplication>
#include <QPixmap>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

#include "WindowBench.h"
#include "desktop/HostWindow.h"
#include "desktop/SourceEditor.h"
#include "win/paths/Drives.h"

namespace {

constexpr int kPages = 100;  // steps of scrolling

// Runs `step` and everything that it leaves for later, paints the window, and returns the seconds of
// processor time. Stores the longest that the window did not answer in `longest`.
template <class TStep>
double Seconds(desktop::THostWindow& window, const TStep& step, double& longest) {
  using TClock = std::chrono::steady_clock;
  longest = 0;
  const auto answer = [&longest](const auto& work) {
    const auto start = TClock::now();
    work();
    longest = std::max(longest, std::chrono::duration<double>(TClock::now() - start).count());
  };
  const auto events = [] { QCoreApplication::processEvents(); };
  const std::clock_t start = std::clock();
  answer(step);
  const auto isLoading = [&] {
    return window.CurrentEditor() != nullptr && window.CurrentEditor()->IsLoading();
  };
  while (isLoading()) answer(events);
  for (int i = 0; i < 3; ++i) answer(events);
  answer([&] { window.grab(); });
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double LongestScroll(desktop::THostWindow& window) {
  QScrollBar& bar = *window.CurrentEditor()->verticalScrollBar();
  double longest = 0, blocked = 0;
  for (int i = 1; i <= kPages; ++i) {
    longest = std::max(longest, Seconds(
                                    window, [&] { bar.setValue(bar.maximum() / kPages * i); }, blocked));
  }
  return longest;
}

void Measure(desktop::TFrontEnd& frontEnd, int argc, char** argv) {
  desktop::THostWindow window(frontEnd);
  window.show();
  const auto path = [&](int i) { return win::ToWindowsPath(argv[i]); };
  double blocked = 0;
  const double project = Seconds(
      window, [&] { window.OpenProject(path(1)); }, blocked);
  std::printf("%.3f %.3f %s\n", project, blocked, argv[1]);
  for (int i = 2; i < argc; ++i) {
    const double file = Seconds(
        window, [&] { window.OpenFile(path(i)); }, blocked);
    std::printf("%.3f %.3f %.3f %s\n", file, blocked, LongestScroll(window), argv[i]);
  }
}

}  // namespace

int main(int argc, char** argv) {
  return bench::Run("OpenWindowBench", argc, argv,
                    [&](desktop::TFrontEnd& frontEnd) { Measure(frontEnd, argc, argv); });
}
