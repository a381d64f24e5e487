// The windows, driven by keys and clicks on the offscreen platform, over the stand-alone host and the real
// engine.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>
#include <map>

#include "MigWizard/Wizard.h"
#include "RecordingHost.h"
#include "desktop/FrontEnd.h"
#include "desktop/ProgressWindow.h"
#include "desktop/QtText.h"
#include "host/Host.h"
#include "target/KVAExpert.h"

namespace {

namespace fs = std::filesystem;

using TTree = std::map<std::string, std::string>;

// An example's copy as drive C:\App, opened in the host, with the expert.
class DesktopTest : public testing::Test {
 protected:
  DesktopTest() {
    fs::copy(fs::path(KVA_SOURCE_DIR) / "examples/bde", FScratch.Folder() / "App",
             fs::copy_options::recursive);
    FOriginal = Tree();
  }

  // Every file of the copy but backups and logs.
  TTree Tree() const {
    TTree tree;
    for (const auto& entry : fs::recursive_directory_iterator(FScratch.Folder() / "App")) {
      const std::string name = fs::relative(entry.path(), FScratch.Folder()).string();
      const bool isTrace = name.find("RBackup") != std::string::npos || name.ends_with("Wiz_Log.txt");
      if (entry.is_regular_file() && !isTrace) tree[name] = FScratch.Read(name);
    }
    return tree;
  }

  // One use of the wizard. Each act is done on the window that is in front by then; every message is
  // recorded.
  void Use(std::deque<std::function<void(QWidget&)>> acts) {
    int patience = 0;
    QObject alive;  // ends the ticks with this use
    const std::function<void()> tick = [&] {
      // A timer of its own each time: an act may open a window that runs its events within the act.
      QTimer::singleShot(10, &alive, tick);
      QWidget* const window = QApplication::activeModalWidget();
      if (window == nullptr || !window->isVisible() || window->objectName() == "ProgressWindow") return;
      if (acts.empty()) {
        if (++patience == 100) window->close();  // a test that is wrong ends, too
        return;
      }
      const auto act = std::move(acts.front());
      acts.pop_front();
      if (const auto* box = qobject_cast<QMessageBox*>(window))
        FMessages.push_back(box->text().toStdString());
      TakePicture(*window);
      act(*window);
    };
    tick();
    FExpert->ShowWizard();
    EXPECT_TRUE(acts.empty() && patience < 100);
  }
  // For the manual: with KVA_PICTURES set to a folder, every window is saved there as it is before an act.
  void TakePicture(QWidget& window) {
    if (qEnvironmentVariableIsEmpty("KVA_PICTURES")) return;
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    window.grab().save(QString("%1/%2-%3.png")
                           .arg(qEnvironmentVariable("KVA_PICTURES"), test->name())
                           .arg(++FPictures, 2, 10, QChar('0')));
  }
  static std::function<void(QWidget&)> Press(Qt::Key key) {
    return [=](QWidget& window) {
      QTest::keyClick(window.focusWidget() != nullptr ? window.focusWidget() : &window, key);
    };
  }
  static std::function<void(QWidget&)> Click(const char* name) {
    return [=](QWidget& window) {
      auto* const button = window.findChild<QAbstractButton*>(name);
      ASSERT_TRUE(button != nullptr && button->isVisible() && button->isEnabled()) << name;
      QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    };
  }
  static std::function<void(QWidget&)> Type(const char* name, const std::string& text) {
    return [=](QWidget& window) {
      auto* const field = window.findChild<QWidget*>(name);
      ASSERT_TRUE(field != nullptr && field->isVisible()) << name;
      field->setFocus();
      QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClicks(field, desktop::ToQt(text));
    };
  }
  static std::function<void(QWidget&)> Check(std::function<void(mig::TWizardForm&)> check) {
    return [=](QWidget&) { check(*mig::WizardForm); };
  }

  test::TScratch FScratch;
  TTree FOriginal;
  desktop::TFrontEnd FFrontEnd{"Test"};
  host::THost FHost;
  target::TKVAMigration FMigration{target::TCatalogue::BuiltIn()};
  toolsapi::TIntf<mig::TCompReplaceExpert> FExpert = target::MakeExpert(FMigration);
  std::vector<std::string> FMessages;
  int FPictures = 0;
};

TEST_F(DesktopTest, ProjectRoadByTheKeyboardAloneAndBack) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\LendDesk.dproj", true));
  const auto enter = Press(Qt::Key_Return);
  Use({enter, enter, enter, enter, enter, enter, enter});
  ASSERT_EQ(FMessages, std::vector<std::string>{"Replace procedure was performed sucessfully."});
  const TTree converted = Tree();
  EXPECT_EQ(FScratch.Read("App/DataMod.dfm").find("TDatabase"), std::string::npos);

  // What the engine makes of the same options alone is what the windows have led to.
  EXPECT_EQ(FMigration.Options().Dest, mig::sdProject);
  EXPECT_EQ(FMigration.Options().BackupDir, "C:\\App\\RBackup");
  ASSERT_TRUE(FMigration.BDE().Restore("C:\\App\\RBackup\\RExpert.reu"));
  EXPECT_EQ(Tree(), FOriginal);
  ASSERT_TRUE(FMigration.BDE().Replace());
  EXPECT_EQ(Tree(), converted);

  // The restore, by clicks; the undo file of the last use stands there.
  FMessages.clear();
  Use({Click("rbModeRestore"), Click("btNext"), Click("btNext"), Click("btFinish"), Click("OKBtn"), enter});
  EXPECT_EQ(FMessages, std::vector<std::string>{"Files were succefully restored."});
  EXPECT_EQ(Tree(), FOriginal);
  EXPECT_EQ(FHost.ActiveProject()->GetFileName(), "C:\\App\\LendDesk.dproj");
}

TEST_F(DesktopTest, FolderRoadWithAPathOfTheHost) {
  const std::string hostFolder = (FScratch.Folder() / "App").string();
  Use({Click("btNext"), Press(Qt::Key_Return),  // the scope can only be a folder
       [](QWidget& window) { EXPECT_FALSE(window.findChild<QWidget*>("btNext")->isEnabled()); },
       Type("cbDirectory", "C:\\Legacy\\Orders"), Click("btNext"), Press(Qt::Key_Return),
       [](QWidget& window) { EXPECT_EQ(window.focusWidget()->objectName(), "cbDirectory"); },
       Type("cbDirectory", hostFolder), Click("chSubDirs"), Press(Qt::Key_Return),
       Check([](auto& form) { EXPECT_EQ(form.cbBackupDir.Text(), "C:\\App\\RBackup"); }), Click("chWriteLog"),
       [](QWidget& window) { EXPECT_FALSE(window.findChild<QWidget*>("chViewLog")->isEnabled()); },
       Type("cbBackupDir", "C:\\Old"), Click("btNext"), Click("btFinish"), Press(Qt::Key_Return)});
  EXPECT_EQ(FMessages, (std::vector<std::string>{"Target directory \"C:\\Legacy\\Orders\" does not exist.",
                                                 "Replace procedure was performed sucessfully."}));
  EXPECT_NE(Tree(), FOriginal);
  EXPECT_TRUE(fs::exists(FScratch.Folder() / "Old/RExpert.reu"));
  EXPECT_FALSE(fs::exists(FScratch.Folder() / "App/Wiz_Log.txt"));
}

TEST_F(DesktopTest, WaysOut) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\LendDesk.dproj", true));
  Use({Press(Qt::Key_Escape)});
  Use({[](QWidget& window) { window.close(); }});
  Use({Click("btNext"), Click("btCancel")});
  const auto toQuestion = Press(Qt::Key_Return);
  Use({toQuestion, toQuestion, toQuestion, toQuestion, toQuestion, Press(Qt::Key_Escape)});
  EXPECT_EQ(Tree(), FOriginal);
  EXPECT_TRUE(FMessages.empty());
}

TEST_F(DesktopTest, MarksShowAndArriveInBothDirections) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\LendDesk.dproj", true));
  const auto marked = [](QWidget& window) {
    const auto* list = window.findChild<QListWidget*>("lbModules");
    int count = 0;
    for (int i = 0; i < list->count(); ++i) count += list->item(i)->checkState() == Qt::Checked;
    return std::pair(count, list->count());
  };
  Use({Click("btNext"), Click("btNext"),
       [&](QWidget& window) { EXPECT_EQ(marked(window), std::pair(11, 11)); },
       Press(Qt::Key_Space),  // the focus is on the list, the first entry is the current one
       [&](QWidget& window) { EXPECT_EQ(marked(window), std::pair(10, 11)); },
       Check([](auto& form) { EXPECT_FALSE(form.lbModules.Checked(0)); }), Click("btDeselect"),
       [&](QWidget& window) { EXPECT_EQ(marked(window), std::pair(0, 11)); }, Click("btCancel")});
}

TEST_F(DesktopTest, ARunCanBeStoppedBetweenTwoFiles) {
  desktop::TProgressWindow progress({&FMigration.BDE()});
  const auto& report = FMigration.BDE().OnProgress;
  report({0, 3, "C:\\App\\Loans\\LoanDesk.pas"});
  QWidget* const window = QApplication::activeModalWidget();
  ASSERT_NE(window, nullptr);
  TakePicture(*window);
  Click("Stop")(*window);
  QTest::qWait(60);
  EXPECT_THROW(report({1, 3, "C:\\App\\B.pas"}), rtl::EAbort);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(FilterTest, OfAPicker) {
  EXPECT_EQ(desktop::ToQtFilter("Undo files (*.reu)|*.reu|All files (*.*)|*.*"),
            "Undo files (*.reu);;All files (*)");
  EXPECT_EQ(desktop::ToQtFilter("Units|*.pas;*.dpr"), "Units (*.pas *.dpr)");
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
