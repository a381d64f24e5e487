// Drives the host's window with the wizard from its loadable module, on the example project.
#pragma once

#include <QTabWidget>

#include "desktop/HostWindow.h"
#include "desktop/MenuBinding.h"
#include "desktop/SourceEditor.h"
#include "desktop/SourceText.h"
#include "tests/WindowTest.h"

namespace tests {

class THostWindowTest : public TWindowTest {
 protected:
  static constexpr char kWizardItem[] = "RExpertItemBDE_IBXKORVA";

  void Open(const char* project) {
    FWindow.show();
    ASSERT_TRUE(FWindow.LoadWizard(win::ToWindowsPath(KVA_EXPERT_MODULE)));
    ASSERT_TRUE(FWindow.OpenProject(project));
    Settle();
  }
  // Waits for the tasks that read files.
  void Settle() {
    EXPECT_TRUE(QTest::qWaitFor([&] { return FWindow.IsIdle(); }, 30000));
  }
  void Do(const std::function<void()>& use, TActs acts) {
    TWindowTest::Do(
        [&] {
          use();
          Settle();
        },
        std::move(acts));
  }
  void Trigger(const char* item) {
    FWindow.Menu().ActionOf(*FWindow.Host().MainMenu().FindItem(item))->trigger();
  }
  // Selects the menu item, and performs the acts on the windows that it opens.
  void Choose(const char* item, TActs acts = {}) {
    Do([&] { Trigger(item); }, std::move(acts));
    TakePicture(FWindow);
  }
  static TAct Answer(QMessageBox::StandardButton button) {
    return [=](QWidget& window) { qobject_cast<QMessageBox*>(&window)->button(button)->click(); };
  }

  // Returns a part of the page in front, or of the window.
  template <class T>
  T& Find(const char* name) {
    QWidget* const page = FWindow.findChild<QTabWidget*>("Editors")->currentWidget();
    T* const part = page == nullptr ? nullptr : page->findChild<T*>(name);
    return part != nullptr ? *part : *FWindow.findChild<T*>(name);
  }

  // A file of the application: its bytes, and its text as an editor shows it.
  std::string Text(const std::string& name) { return FScratch.Read("App/" + name); }
  QString OnDisk(const std::string& name) {
    return desktop::TSourceText(Text(name), host::IsFormFile(name)).Text();
  }
  // The text in the current editor.
  QString Shown() { return FWindow.CurrentEditor()->Text(); }
  bool IsModified() { return FWindow.CurrentEditor()->Editor().Buffer().Modified(); }
  // Types into the current editor as a user does.
  void TypeText(const std::string& text) {
    for (const QChar c : desktop::ToQt(text)) {
      const int key = c == '\n' ? Qt::Key_Return : 0;
      QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, c == '\n' ? QString("\r") : QString(c));
      QApplication::sendEvent(FWindow.CurrentEditor(), &press);
    }
  }

  desktop::THostWindow FWindow{FFrontEnd};
};

}  // namespace tests
