// Drives the windows with keys and clicks on the offscreen platform, with the stand-alone host and the real
// engine.
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QTreeView>
#include <QUrl>
#include <map>

#include "MigWizard/wizard/Wizard.h"
#include "desktop/FindingsModel.h"
#include "desktop/HostWindow.h"
#include "desktop/MenuBinding.h"
#include "desktop/ProgressWindow.h"
#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "desktop/TickStyle.h"
#include "host/Host.h"
#include "target/KVAExpert.h"
#include "tests/WindowTest.h"

namespace {

namespace fs = std::filesystem;

using TTree = std::map<std::string, std::string>;

// The example, opened in the host with the expert.
class DesktopTest : public tests::TWindowTest {
 protected:
  // Returns every file of the copy except backups and logs.
  TTree Tree() const {
    TTree tree;
    for (const auto& entry : fs::recursive_directory_iterator(FScratch.HostPath("App"))) {
      const std::string name = fs::relative(entry.path(), FScratch.HostPath()).string();
      const bool isTrace = name.find("RBackup") != std::string::npos || name.ends_with("Wiz_Log.txt");
      if (entry.is_regular_file() && !isTrace) tree[name] = FScratch.Read(name);
    }
    return tree;
  }

  void Use(TActs acts) {
    Do([this] { FExpert->ShowWizard(); }, std::move(acts));
  }
  void BeforeAct(QWidget& window) override {
    TakePicture(window);
    ExpectWholeTexts(window);
  }
  static TAct Check(const std::function<void(mig::TWizardForm&)>& check) {
    return [=](QWidget&) { check(*mig::WizardForm); };
  }

  const TTree FOriginal = Tree();
  host::THost FHost;
  target::TKVAMigration FMigration{target::TCatalogue::BuiltIn()};
  toolsapi::TIntf<mig::TCompReplaceExpert> FExpert = target::MakeExpert(FMigration);
};

TEST_F(DesktopTest, ProjectRoadByTheKeyboardAlone) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\LendDesk.dproj", true));
  Use(WholeRun());
  ASSERT_EQ(Headlines(), std::vector<std::string>{"Replace procedure was performed sucessfully."});
  const TTree converted = Tree();
  EXPECT_NE(converted, FOriginal);

  // Running the engine with the same options has the same result as the windows.
  EXPECT_EQ(FMigration.Options().Dest, mig::sdProject);
  EXPECT_EQ(FMigration.Options().BackupDir, "C:\\App\\RBackup");
  ASSERT_TRUE(FMigration.BDE().Restore("C:\\App\\RBackup\\RExpert.reu"));
  EXPECT_EQ(Tree(), FOriginal);
  FMigration.Options().Policy = {};
  ASSERT_TRUE(FMigration.BDE().Replace());
  EXPECT_EQ(Tree(), converted);
}

TEST_F(DesktopTest, FolderRoadWithAPathOfTheHost) {
  const std::string hostFolder = FScratch.HostPath("App");
  Use({Click("btNext"), Press(Qt::Key_Return),  // the scope can only be a folder
       [](QWidget& window) { EXPECT_FALSE(window.findChild<QWidget*>("btNext")->isEnabled()); },
       Type("cbDirectory", "C:\\Legacy\\Orders"), Click("btNext"), Press(Qt::Key_Return),
       [](QWidget& window) { EXPECT_EQ(window.focusWidget()->objectName(), "cbDirectory"); },
       Type("cbDirectory", hostFolder), Click("chSubDirs"), Press(Qt::Key_Return),
       Check([](auto& form) { EXPECT_EQ(form.cbBackupDir.Text(), "C:\\App\\RBackup"); }), Click("chWriteLog"),
       [](QWidget& window) { EXPECT_FALSE(window.findChild<QWidget*>("chViewLog")->isEnabled()); },
       Type("cbBackupDir", "C:\\Old"), Click("btNext"), Click("btFinish"), Press(Qt::Key_Return)});
  EXPECT_EQ(Headlines(), (std::vector<std::string>{"Target directory \"C:\\Legacy\\Orders\" does not exist.",
                                                   "Replace procedure was performed sucessfully."}));
  EXPECT_NE(Tree(), FOriginal);
  EXPECT_TRUE(fs::exists(FScratch.HostPath("Old/RExpert.reu")));
  EXPECT_FALSE(fs::exists(FScratch.HostPath("App/Wiz_Log.txt")));
}

TEST_F(DesktopTest, ADroppedFileReplacesThePath) {
  const auto drop = [this](const std::string& path) {
    return [=, this](QWidget& window) {
      auto* line = window.findChild<QLineEdit*>("edUndoFile");
      if (!line->isVisible()) line = window.findChild<QComboBox*>("cbDirectory")->lineEdit();
      Drop(*line,
           {QUrl("https://example.com/"), QUrl::fromLocalFile(desktop::ToQt(FScratch.HostPath(path)))});
      EXPECT_EQ(desktop::FromQt(line->text()), FScratch.HostPath(path));
    };
  };
  FScratch.Write("App/My Units/A.pas", "");
  FScratch.Write("App/RBackup/RExpert.reu", "");
  Use({Click("btNext"), Press(Qt::Key_Return), Type("cbDirectory", "C:\\Other"), drop("App/My Units"),
       Click("btNext"), Check([](auto& form) { EXPECT_EQ(form.cbDirectory.Text(), "C:\\App\\My Units"); }),
       Click("btCancel")});
  Use({Click("rbModeRestore"), Click("btNext"), drop("App/RBackup/RExpert.reu"), Click("btNext"),
       Check([](auto& form) { EXPECT_EQ(form.edUndoFile.Text(), "C:\\App\\RBackup\\RExpert.reu"); }),
       Click("btCancel")});
}

TEST_F(DesktopTest, RelativePathsAreMadeFull) {
  const fs::path before = fs::current_path();
  fs::current_path(FScratch.HostPath());
  FScratch.Write("App/RBackup/RExpert.reu", "");
  Use({Click("btNext"), Click("btNext"), Type("cbDirectory", "App"), Click("btNext"), Check([](auto& form) {
         EXPECT_EQ(form.cbDirectory.Text(), "C:\\App");
         EXPECT_EQ(form.cbBackupDir.Text(), "C:\\App\\RBackup");
       }),
       Type("cbBackupDir", "Old"), Click("btNext"),
       Check([](auto& form) { EXPECT_EQ(form.GetBackupDir(), "C:\\App\\Old"); }), Click("btCancel")});
  Use({Click("rbModeRestore"), Click("btNext"), Type("edUndoFile", "App\\RBackup/RExpert.reu"),
       Click("btNext"),
       Check([](auto& form) { EXPECT_EQ(form.edUndoFile.Text(), "C:\\App\\RBackup\\RExpert.reu"); }),
       Click("btCancel")});
  fs::current_path(before);
}

TEST_F(DesktopTest, WaysOut) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\LendDesk.dproj", true));
  Use({Press(Qt::Key_Escape)});
  Use({[](QWidget& window) { window.close(); }});
  Use({Click("btNext"), Click("btCancel")});
  TActs toQuestion(5, Press(Qt::Key_Return));
  toQuestion.push_back(Press(Qt::Key_Escape));
  Use(toQuestion);
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
       Press(Qt::Key_Space),  // the focus is on the list; the first entry is the current one
       [&](QWidget& window) { EXPECT_EQ(marked(window), std::pair(10, 11)); },
       Check([](auto& form) { EXPECT_FALSE(form.lbModules.Checked(0)); }), Click("btDeselect"),
       [&](QWidget& window) { EXPECT_EQ(marked(window), std::pair(0, 11)); }, Click("btCancel")});
}

TEST_F(DesktopTest, ARunCanBeStoppedBetweenTwoFiles) {
  desktop::TProgressWindow progress;
  const mig::TRunWatch watch(progress, {&FMigration.BDE()});
  const auto& report = FMigration.BDE().OnProgress;
  report({0, 3, "C:\\App\\Loans\\LoanDesk.pas"});
  QWidget* const window = QApplication::activeModalWidget();
  ASSERT_NE(window, nullptr);
  TakePicture(*window);
  Click("Stop")(*window);
  const auto stops = [&report] {
    try {
      report({1, 3, "C:\\App\\B.pas"});
      return false;
    } catch (const rtl::EAbort&) {
      return true;
    }
  };
  EXPECT_TRUE(QTest::qWaitFor(stops, 30000));
  FMigration.BDE().OnReplacing(mig::TRunPhase::Removing, 0, 0);
  EXPECT_EQ(window->findChild<QLabel*>("Phase")->text(), "Removing temporary files");
  progress.Close();
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

// A question with more than any screen holds: nothing is cut, and what does not fit scrolls.
TEST_F(DesktopTest, LongQuestionsStayOnTheScreen) {
  std::string path = "C:";
  for (int i = 0; i < 40; ++i) path += "\\" + std::string(12, 'x');
  rtl::TQuestion question{.Caption = "Test",
                          .Text = "\"" + path + "\" cannot be read.",
                          .Flags = rtl::MB_ICONERROR,
                          .Reasons = std::vector<std::string>(30, "A reason with \"" + path + "\" in it."),
                          .Rows = {{"Backups", path}, {"", path}, {"Objects", "20 converted"}},
                          .Details = std::vector<std::string>(5000, path),
                          .Buttons = {"&One", "Cancel"}};
  Do([&] { FFrontEnd.Ask(question); }, {[&](QWidget& window) {
       const QRect screen = window.screen()->availableGeometry();
       EXPECT_LE(window.height(), screen.height());
       EXPECT_LE(window.width(), screen.width());
       const auto* texts = window.findChild<QScrollArea*>("Texts");
       EXPECT_LE(texts->widget()->width(), texts->viewport()->width()) << "only down";
       Click("One")(window);
     }});
}

class TSessionTest : public tests::TWindowTest {};

// A later session shows what the project's last run has left, unless that was undone.
TEST_F(TSessionTest, ALaterSessionShowsWhatTheLastRunLeft) {
  const auto use = [&](const std::function<void(desktop::THostWindow&, QTabWidget&)>& session) {
    desktop::THostWindow window(FFrontEnd);
    window.show();
    ASSERT_TRUE(window.OpenProject("C:\\App\\LendDesk.groupproj"));
    EXPECT_TRUE(WaitFor([&] { return window.IsIdle(); }));
    session(window, *window.findChild<QTabWidget*>("Editors"));
  };
  const auto tabs = [](const QTabWidget& pages) {
    std::string texts;
    for (int i = 0; i < pages.count(); ++i) texts += pages.tabText(i).toStdString() + '\n';
    return texts;
  };
  use([&](desktop::THostWindow& window, QTabWidget& pages) {
    Do(
        [&] {
          pages.findChild<QPushButton*>("PreviewBDE")->click();
          pages.findChild<QPushButton*>("ConvertTicked")->click();
        },
        TActs(2, Press(Qt::Key_Return)));
    EXPECT_TRUE(WaitFor([&] { return window.IsIdle(); }));
    EXPECT_EQ(tabs(pages), "Migration\nChanges (18)\nWhat is left (49)\n");
  });
  use([&](desktop::THostWindow& window, QTabWidget& pages) {
    EXPECT_EQ(tabs(pages), "Migration\nWhat is left (49)\n");
    EXPECT_EQ(pages.currentIndex(), 0);
    auto& page = *pages.widget(1);
    page.findChild<QComboBox*>("FindingsGroups")->setCurrentIndex(0);
    page.findChild<QLineEdit*>("FindingsFilter")->setText("DataMod.pas");
    auto& table = *page.findChild<QTreeView*>("Findings");
    table.sortByColumn(desktop::TFindingsModel::Place, Qt::AscendingOrder);
    table.setCurrentIndex(table.model()->index(table.model()->rowCount() - 1, 0));
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_TRUE(WaitFor([&] { return window.IsIdle() && window.CurrentEditor() != nullptr; }));
    int line = 0, column = 0;
    window.CurrentEditor()->getCursorPosition(&line, &column);
    EXPECT_EQ(window.CurrentEditor()->text(line).trimmed(), "DM.LendingDB.ApplyUpdates([QList]);");
    window.Menu().ActionOf(*window.Host().MainMenu().FindItem("WindowReview"))->trigger();
    EXPECT_TRUE(WaitFor([&] { return window.IsIdle(); }));
    EXPECT_EQ(tabs(pages), "Migration\nWhat is left (49)\nMemberList.pas\nChanges (18)\n");
  });
  fs::copy(fs::path(KVA_SOURCE_DIR) / "examples/bde", FScratch.HostPath("App"),
           fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  use([&](desktop::THostWindow&, QTabWidget& pages) { EXPECT_EQ(tabs(pages), "Migration\n"); });
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
  QApplication::setStyle(new desktop::TTickStyle);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
