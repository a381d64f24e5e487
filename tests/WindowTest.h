// Simulates a user of the windows: performs a list of acts, each on the modal window that is active by
// then.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <deque>
#include <functional>

#include "desktop/FrontEnd.h"
#include "desktop/QtText.h"
#include "desktop/QuestionWindow.h"
#include "tests/Scratch.h"

namespace tests {

inline constexpr char kGroup[] = "C:\\App\\LendDesk.groupproj";  // of the copied examples

// Drive C: with a copy of the example project as C:\App.
class TWindowTest : public testing::Test {
 protected:
  using TAct = std::function<void(QWidget&)>;
  using TActs = std::deque<TAct>;

  TWindowTest() {
    // Temporary folders that other runs have left would be told.
    std::filesystem::create_directory(FScratch.HostPath("tmp"));
    qputenv("TMPDIR", FScratch.HostPath("tmp").c_str());
    std::filesystem::copy(std::filesystem::path(KVA_SOURCE_DIR) / "examples/bde", FScratch.HostPath("App"),
                          std::filesystem::copy_options::recursive);
  }
  ~TWindowTest() override {
    if (FTempDir.isNull()) {
      qunsetenv("TMPDIR");
    } else {
      qputenv("TMPDIR", FTempDir);
    }
  }

  // Runs `use`, which opens windows, and performs the acts on them. Records the texts of message boxes and
  // questions.
  void Do(const std::function<void()>& use, TActs acts) {
    int patience = 0;
    QObject alive;  // ends the timers of this use
    const std::function<void()> tick = [&] {
      // Use a new timer each time, because an act may open a window that runs an event loop within the act.
      QTimer::singleShot(10, &alive, tick);
      QWidget* const window = QApplication::activeModalWidget();
      if (FIsWaiting) return;
      if (window == nullptr || !window->isVisible() || window->objectName() == "ProgressWindow") return;
      if (acts.empty()) {
        if (++patience == 100) window->close();  // so that a wrong test ends, too
        return;
      }
      const TAct act = std::move(acts.front());
      acts.pop_front();
      if (const auto* box = qobject_cast<QMessageBox*>(window))
        FMessages.push_back(box->text().toStdString());
      if (const auto* question = dynamic_cast<desktop::TQuestionWindow*>(window))
        FMessages.push_back(question->Message().toStdString());
      BeforeAct(*window);
      act(*window);
    };
    tick();
    use();
    EXPECT_TRUE(acts.empty() && patience < 100) << "what was expected did not come";
  }
  virtual void BeforeAct(QWidget&) {}

  // Drops the files on the middle of a visible widget. They must be accepted as a copy.
  static void Drop(QWidget& target, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    const QPoint place = target.mapTo(target.window(), target.rect().center());
    const auto send = [&](auto event) {
      QApplication::sendEvent(target.window()->windowHandle(), &event);
      EXPECT_TRUE(event.isAccepted());
      EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    };
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    send(QDragEnterEvent(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier));
    send(QDropEvent(place, actions, &data, Qt::LeftButton, Qt::ShiftModifier));
  }

  // Waits within an act until `condition` holds, and performs no other act meanwhile. Returns whether it
  // does.
  template <typename TCondition>
  bool WaitFor(TCondition condition) {
    FIsWaiting = true;
    const bool holds = QTest::qWaitFor(condition, 30000);
    FIsWaiting = false;
    return holds;
  }

  // Checks that no wrapped text is cut at its end.
  static void ExpectWholeTexts(const QWidget& window) {
    for (const QLabel* const label : window.findChildren<QLabel*>()) {
      const QRect inside = label->contentsRect();
      if (!label->isVisible() || !label->wordWrap()) continue;
      EXPECT_GE(inside.height(), label->heightForWidth(inside.width())) << label->text().toStdString();
    }
  }

  // Takes a picture for the manual: if KVA_PICTURES names a folder, saves the window's present state there,
  // in a light and in a dark theme.
  void TakePicture(QWidget& window) {
    if (qEnvironmentVariableIsEmpty("KVA_PICTURES")) return;
    FIsWaiting = true;  // waiting lets timers run
    QTest::qWait(50);
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    const QString name = QString("%1/%2-%3-%4")
                             .arg(qEnvironmentVariable("KVA_PICTURES"), test->test_suite_name(), test->name())
                             .arg(++FPictures, 2, 10, QChar('0'));
    window.grab().save(name + ".png");
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(0x353535), QColor(0x2B2B2B));
    dark.setColor(QPalette::Base, QColor(0x1E1E1E));
    QApplication::setPalette(dark);
    QTest::qWait(50);
    window.grab().save(name + "-dark.png");
    QApplication::setPalette(light);
    FIsWaiting = false;
  }

  static TAct Press(Qt::Key key) {
    return [=](QWidget& window) {
      QTest::keyClick(window.focusWidget() != nullptr ? window.focusWidget() : &window, key);
    };
  }
  static TAct Click(const char* name) {
    return [=](QWidget& window) {
      auto* const button = window.findChild<QAbstractButton*>(name);
      ASSERT_TRUE(button != nullptr && button->isVisible() && button->isEnabled()) << name;
      QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    };
  }
  static TAct Type(const char* name, const std::string& text) {
    return [=](QWidget& window) {
      auto* const field = window.findChild<QWidget*>(name);
      ASSERT_TRUE(field != nullptr && field->isVisible()) << name;
      field->setFocus();
      QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClicks(field, desktop::ToQt(text));
    };
  }
  // Returns the first line of each message so far.
  std::vector<std::string> Headlines() const {
    std::vector<std::string> lines;
    for (const std::string& message : FMessages) lines.push_back(message.substr(0, message.find('\n')));
    return lines;
  }

  // Steps through the project's pages to the end, the question and the outcome.
  static TActs WholeRun() { return TActs(7, Press(Qt::Key_Return)); }

  TScratch FScratch;
  desktop::TFrontEnd FFrontEnd{"Test"};
  std::vector<std::string> FMessages;

 private:
  const QByteArray FTempDir = qgetenv("TMPDIR");
  int FPictures = 0;
  bool FIsWaiting = false;
};

}  // namespace tests
