// Opens a project in the window, previews its migration, converts it and undoes that, converts it with the
// wizard, and opens it in another window with the findings of that run. Prints a line for each step, in
// seconds: the longest time that an event of the window waited for its turn, and the time until the step had
// ended.
//
//   QT_QPA_PLATFORM=offscreen RunWindowBench PROJECT MODULE    the wizard's module: kvaexpert.so
#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include "WindowBench.h"
#include "desktop/FrontEnd.h"
#include "desktop/HostWindow.h"
#include "desktop/MenuBinding.h"
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

// Clicks these buttons, by name, each as soon as a window offers it.
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
    if (button == nullptr || !button->isVisible() || !button->isEnabled()) return;
    ++FNext;
    button->click();
  }

  const std::vector<const char*> FButtons;
  size_t FNext = 0;
  QTimer FTimer;
};

// A session: a window with a project, whose steps are measured.
class TSession {
 public:
  TSession(desktop::TFrontEnd& frontEnd, const char* module) : FWindow(frontEnd) {
    FWindow.show();
    FWindow.LoadWizard(win::ToWindowsPath(module));
  }

  void Open(const char* name, const char* project) {
    Measure(name, {}, [&] { FWindow.OpenProject(win::ToWindowsPath(project)); });
  }
  // Clicks a button of the page for the migration, and then those of the windows that appear.
  void Click(const char* name, const char* button, std::vector<const char*> answers = {}) {
    Measure(name, std::move(answers),
            [&] { FWindow.findChild<QWidget*>("MigrationPage")->findChild<QPushButton*>(button)->click(); });
  }
  void UseWizard(const char* name, std::vector<const char*> buttons) {
    Measure(name, std::move(buttons), [&] {
      FWindow.Menu().ActionOf(*FWindow.Host().MainMenu().FindItem("RExpertItemBDE_IBXKORVA"))->trigger();
    });
  }
  bool Has(const char* page) const { return FWindow.findChild<QWidget*>(page) != nullptr; }

 private:
  void Measure(const char* name, std::vector<const char*> answers, const std::function<void()>& step) {
    const TAnswers clicks(std::move(answers));
    FPulse.Measure(name, step, [this] { return IsIdle(); });
  }
  bool IsIdle() const {
    const auto* const page =
        static_cast<desktop::TMigrationPage*>(FWindow.findChild<QWidget*>("MigrationPage"));
    const auto* const review = static_cast<desktop::TReviewPage*>(FWindow.findChild<QWidget*>("ReviewPage"));
    return FWindow.IsIdle() && page->IsIdle() && (review == nullptr || review->IsIdle());
  }

  desktop::THostWindow FWindow;
  TPulse FPulse;
};

void Measure(desktop::TFrontEnd& frontEnd, const char* project, const char* module) {
  {
    TSession session(frontEnd, module);
    session.Open("open", project);
    session.Click("preview", "PreviewBDE");
    session.Click("convert and undo", "ConvertTicked", {"Convert", "UndoThisRun", "OKBtn", "Close"});
    session.Click("preview again", "PreviewBDE");
    session.UseWizard("unit list", {"btNext", "btNext", "btDeselect", "btSelect", "btCancel"});
    session.UseWizard("wizard",
                      {"btNext", "btNext", "btNext", "btNext", "btFinish", "NewFolder", "OKBtn", "Close"});
  }
  TSession later(frontEnd, module);
  later.Open("open with findings", project);
  if (!later.Has("FindingsPage")) throw std::runtime_error("the findings of the last run are not shown");
}

}  // namespace

int main(int argc, char** argv) {
  return bench::Run("RunWindowBench", argc, argv, [&](desktop::TFrontEnd& frontEnd) {
    if (argc == 3) Measure(frontEnd, argv[1], argv[2]);
  });
}
