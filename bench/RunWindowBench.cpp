// Opens a project in the window, previews its migration, converts it and undoes that, then does so again and
// keeps the result. Prints a line for each step, in seconds: the longest time that an event of the window
// waited for its turn, and the time until the step had ended.
//
//   QT_QPA_PLATFORM=offscreen RunWindowBench PROJECT
#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "desktop/FrontEnd.h"
#include "desktop/HostWindow.h"
#include "desktop/MigrationPage.h"
#include "desktop/ReviewPage.h"
#include "win/paths/Drives.h"

namespace {

// Posts events to the main thread, one after the other, and measures how long each of them waits there.
class TPulse {
 public:
  TPulse() : FThread([this] { Post(); }) {}
  ~TPulse() {
    FIsDone = true;
    FThread.join();
  }

  // Runs `step`, handles events until `isIdle` returns True, and prints the times.
  void Measure(const char* name, const std::function<void()>& step, const std::function<bool()>& isIdle) {
    QCoreApplication::processEvents();
    FLongest = 0;
    const TClock::time_point start = TClock::now();
    step();
    do {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    } while (!isIdle());
    QCoreApplication::processEvents();
    std::printf("%.3f %.3f %s\n", FLongest, Since(start), name);
  }

 private:
  using TClock = std::chrono::steady_clock;

  static double Since(TClock::time_point start) {
    return std::chrono::duration<double>(TClock::now() - start).count();
  }
  void Post() {
    while (!FIsDone) {
      if (!FIsPosted.exchange(true)) {
        QMetaObject::invokeMethod(
            &FTarget, [this, posted = TClock::now()] { Note(posted); }, Qt::QueuedConnection);
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  }
  void Note(TClock::time_point posted) {
    FLongest = std::max(FLongest, Since(posted));
    FIsPosted = false;
  }

  QObject FTarget;
  double FLongest = 0;
  std::atomic<bool> FIsPosted = false, FIsDone = false;
  std::thread FThread;
};

// Clicks these buttons, by name, each as soon as a question shows it.
class TAnswers {
 public:
  explicit TAnswers(std::vector<const char*> buttons) : FButtons(std::move(buttons)) {
    FTimer.callOnTimeout([this] { Click(); });
    FTimer.start(20);
  }

 private:
  void Click() {
    QWidget* const window = QApplication::activeModalWidget();
    if (window == nullptr || FNext == FButtons.size()) return;
    auto* const button = window->findChild<QPushButton*>(FButtons[FNext]);
    if (button == nullptr) return;
    ++FNext;
    button->click();
  }

  const std::vector<const char*> FButtons;
  size_t FNext = 0;
  QTimer FTimer;
};

int Measure(int argc, char** argv) {
  QApplication application(argc, argv);
  desktop::TFrontEnd frontEnd("Benchmark");
  desktop::THostWindow window(frontEnd);
  window.show();
  TPulse pulse;
  const auto isIdle = [&] {
    const auto* const page =
        static_cast<desktop::TMigrationPage*>(window.findChild<QWidget*>("MigrationPage"));
    const auto* const review = static_cast<desktop::TReviewPage*>(window.findChild<QWidget*>("ReviewPage"));
    return window.IsIdle() && page->IsIdle() && (review == nullptr || review->IsIdle());
  };
  const auto click = [&](const char* name) {
    window.findChild<QWidget*>("MigrationPage")->findChild<QPushButton*>(name)->click();
  };
  const auto convert = [&](const char* name, std::vector<const char*> buttons) {
    const TAnswers answers(std::move(buttons));
    pulse.Measure(
        name, [&] { click("ConvertTicked"); }, isIdle);
  };
  pulse.Measure(
      "open", [&] { window.OpenProject(win::ToWindowsPath(argv[1])); }, isIdle);
  pulse.Measure(
      "preview", [&] { click("PreviewBDE"); }, isIdle);
  convert("convert and undo", {"Convert", "UndoThisRun", "OKBtn", "Close"});
  pulse.Measure(
      "preview again", [&] { click("PreviewBDE"); }, isIdle);
  convert("convert", {"Convert", "Close"});
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Measure(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "RunWindowBench: %s\n", error.what());
    return 1;
  }
}
