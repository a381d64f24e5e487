// Sequences of user actions that could lose work: saving over a newer file, second runs, restores over edited
// files. The whole tree is compared after each.
#include <QAction>
#include <QEvent>
#include <QPlainTextEdit>
#include <map>

#include "desktop/DifferenceWindow.h"
#include "target/KVAReplacer.h"
#include "tests/HostWindowFixture.h"

namespace {

namespace fs = std::filesystem;
using TTexts = std::vector<std::string>;
using TTree = std::map<std::string, std::string>;

constexpr char kReplaced[] = "Replace procedure was performed sucessfully.";
constexpr char kRestored[] = "Files were succefully restored.";
constexpr char kUnit[] = "App/About.pas";
constexpr char kName[] = "\"C:\\App\\About.pas\"";

class DataLossTest : public tests::THostWindowTest {
 protected:
  DataLossTest() {
    Open("C:\\App\\LendDesk.dproj");
    FWindow.OpenFile("C:\\App\\About.pas");
  }

  // Returns the files below a folder of the application, except logs; without a name, also except backups.
  TTree Tree(const std::string& folder = {}) const {
    TTree tree;
    for (const auto& entry : fs::recursive_directory_iterator(FScratch.HostPath("App/" + folder))) {
      const std::string name = fs::relative(entry.path(), FScratch.HostPath()).string();
      const bool isTrace = folder.empty() && name.find("RBackup") != std::string::npos;
      if (entry.is_regular_file() && !isTrace && !name.ends_with("Wiz_Log.txt"))
        tree[name] = FScratch.Read(name);
    }
    return tree;
  }
  // Returns `tree` with other contents of the unit.
  static TTree With(TTree tree, const std::string& text) {
    tree[kUnit] = text;
    return tree;
  }

  // Selects the menu item. Returns the first lines of the messages that came.
  TTexts Choose(const char* item, TActs acts = {}) {
    FMessages.clear();
    THostWindowTest::Choose(item, std::move(acts));
    return Headlines();
  }
  // Another program writes the unit; the window becomes active.
  TTexts EditOutside(const std::string& text, TActs acts = {}) {
    FScratch.Write(kUnit, text);
    fs::last_write_time(FScratch.HostPath(kUnit), fs::last_write_time(FScratch.HostPath(kUnit)) + ++FLater);
    return Activate(std::move(acts));
  }
  TTexts Activate(TActs acts = {}) {
    FMessages.clear();
    Do(
        [&] {
          QEvent activate(QEvent::WindowActivate);
          QApplication::sendEvent(&FWindow, &activate);
          QCoreApplication::processEvents();
        },
        std::move(acts));
    return Headlines();
  }

  void TypeIntoUnit(const char* text) { FWindow.CurrentEditor()->insertAt(text, 0, 0); }
  std::string Shown() { return THostWindowTest::Shown().toStdString(); }

  // Steps through the wizard to the end of the run; `answers` come after Finish.
  static TActs RunWith(TActs answers) {
    TActs acts(5, Press(Qt::Key_Return));
    acts.insert(acts.end(), answers.begin(), answers.end());
    return acts;
  }
  static TActs RestoreWith(TActs answers) {
    TActs acts = {Click("rbModeRestore"), Click("btNext"),
                  Type("edUndoFile", "C:\\App\\RBackup\\RExpert.reu"), Click("btNext"), Click("btFinish")};
    acts.insert(acts.end(), answers.begin(), answers.end());
    return acts;
  }

  void BeforeAct(QWidget& window) override {
    if (window.objectName() == "Question") TakePicture(window);
  }

  const TTree FOriginal = Tree();
  std::chrono::seconds FLater{0};
};

TEST_F(DataLossTest, SavingOverANewerFileAsks) {
  const TTexts changed = {std::string(kName) + " was changed on the disk."};
  TypeIntoUnit("mine ");
  const std::string mine = "mine " + FOriginal.at(kUnit);
  EXPECT_EQ(EditOutside("theirs", {Click("KeeptheEditor's")}),
            TTexts{std::string(kName) + " was changed on the disk, and in its editor."});
  EXPECT_EQ(Activate(), TTexts{}) << "asks once for each version";
  EXPECT_EQ(Choose("FileSave", {Press(Qt::Key_Return)}), changed);
  EXPECT_EQ(Tree(), With(FOriginal, "theirs")) << "the default is to leave both";
  EXPECT_TRUE(IsModified());

  const auto difference = [this](QWidget& window) {
    auto& view = dynamic_cast<desktop::TDifferenceWindow&>(window);
    EXPECT_TRUE(WaitFor([&] { return view.IsIdle(); }));
    TakePicture(window);
    EXPECT_TRUE(
        window.findChild<QPlainTextEdit*>("DiffBefore")->toPlainText().startsWith("mine unit About;"));
    EXPECT_EQ(window.findChild<QPlainTextEdit*>("DiffAfter")->toPlainText().trimmed(), "theirs");
    Click("Close")(window);
  };
  EXPECT_EQ(Choose("FileSave", {Click("ShowDifference"), difference, Click("Overwrite")}),
            (TTexts{changed[0], changed[0]}));
  EXPECT_EQ(Tree(), With(FOriginal, mine));
  EXPECT_FALSE(IsModified());
  EXPECT_EQ(Choose("FileSave"), TTexts{}) << "the file is the editor's own now";

  TypeIntoUnit("more ");
  EXPECT_EQ(EditOutside("theirs again", {Press(Qt::Key_Escape)}).size(), 1U);
  EXPECT_EQ(Choose("FileSave", {Click("Reload")}), changed);
  EXPECT_EQ(Tree(), With(FOriginal, "theirs again"));
  EXPECT_EQ(Shown(), "theirs again");
}

TEST_F(DataLossTest, ChangesFromOutsideAreShownWhenTheWindowIsActivated) {
  EXPECT_EQ(EditOutside("theirs"), TTexts{});
  EXPECT_EQ(Shown(), "theirs");
  TypeIntoUnit("mine ");
  EXPECT_EQ(EditOutside("newer", {Press(Qt::Key_Return)}).size(), 1U) << "the disk is the default";
  EXPECT_EQ(Shown(), "newer");
  EXPECT_FALSE(IsModified());
  EXPECT_EQ(Tree(), With(FOriginal, "newer"));
}

// A run over the folder concerns the open project too.
TEST_F(DataLossTest, AfterARunOverTheFolderEditorsShowWhatIsOnTheDisk) {
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  TypeIntoUnit("mine ");
  FWindow.OpenFile("C:\\App\\About.pas");
  EXPECT_EQ(Choose(kWizardItem, {Click("btNext"), Click("rbDestFolder"), Click("btNext"),
                                 Type("cbDirectory", "C:\\App"), Click("btNext"), Click("btNext"),
                                 Click("btFinish"), Press(Qt::Key_Return), Press(Qt::Key_Return)}),
            (TTexts{kReplaced, "\"C:\\App\\DataMod.pas\" was changed on the disk, and in its editor."}));
  const TTree converted = Tree();
  EXPECT_NE(converted, FOriginal);
  const auto text = [&](const char* name) {
    return desktop::TSourceText(converted.at(name), false).Text().toStdString();
  };
  FWindow.OpenFile("C:\\App\\About.pas");
  EXPECT_EQ(Shown(), text(kUnit));
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  EXPECT_EQ(Shown(), text("App/DataMod.pas"));

  EXPECT_EQ(Choose(kWizardItem, RestoreWith({Click("OKBtn"), Press(Qt::Key_Return)})), TTexts{kRestored});
  EXPECT_EQ(Tree(), FOriginal);
}

TEST_F(DataLossTest, ASecondRunKeepsTheUndoFileOfTheFirst) {
  const std::string found =
      "The backup folder \"C:\\App\\RBackup\" holds the undo file of an earlier run, which this run would "
      "overwrite.";
  EXPECT_EQ(Choose(kWizardItem, RunWith({Press(Qt::Key_Return), Press(Qt::Key_Return)})), TTexts{kReplaced});
  const TTree converted = Tree();
  const TTree backups = Tree("RBackup");
  FScratch.Write(kUnit, FOriginal.at(kUnit));
  const TTree before = Tree();

  EXPECT_EQ(Choose(kWizardItem, RunWith({Click("Cancel")})), TTexts{found});
  EXPECT_EQ(Tree(), before);
  EXPECT_EQ(Tree("RBackup"), backups);

  // A second run that fails, into the same folder.
  FScratch.Write("App/DataMod.dfm", std::string("\xFF\x0A\0Broken", 9));
  const TTree broken = Tree();
  EXPECT_EQ(Choose(kWizardItem, RunWith({Click("Overwrite"), Press(Qt::Key_Return), Click("Cancel")})),
            (TTexts{found, "C:\\App\\DataMod.DFM: Form data at offset 9: the signature TPF0 is missing."}));
  EXPECT_EQ(Tree(), broken);
  EXPECT_EQ(Tree("RBackup"), backups);
  FScratch.Write("App/DataMod.dfm", before.at("App/DataMod.dfm"));

  // One that the user stops.
  QTimer stop;
  stop.callOnTimeout([&stop] {
    QWidget* const window = QApplication::activeModalWidget();
    if (window == nullptr || window->objectName() != "ProgressWindow") return;
    Click("Stop")(*window);
    stop.stop();
  });
  stop.start(0);
  EXPECT_EQ(Choose(kWizardItem, RunWith({Click("Overwrite"), Press(Qt::Key_Return), Press(Qt::Key_Return)})),
            (TTexts{found, "The run was stopped."}));
  EXPECT_EQ(Tree(), before);
  EXPECT_EQ(Tree("RBackup"), backups);

  // One into a new folder, which is undone from its outcome.
  EXPECT_EQ(Choose(kWizardItem, RunWith({Click("NewFolder"), Press(Qt::Key_Return), Click("UndoThisRun"),
                                         Click("OKBtn"), Press(Qt::Key_Return)})),
            (TTexts{found, kReplaced, kRestored}));
  EXPECT_EQ(Tree(), before);
  EXPECT_EQ(Tree("RBackup"), backups);
}

TEST_F(DataLossTest, MissingFilesAreToldBeforeTheRun) {
  fs::remove(FScratch.HostPath("App/Loans/LoanDesk.pas"));
  ASSERT_TRUE(FWindow.OpenProject("C:\\App\\LendDesk.dproj"));
  const TTree before = Tree();
  EXPECT_EQ(Choose(kWizardItem, RunWith({Click("Cancel")})), TTexts{"One file of the project is missing."});
  EXPECT_TRUE(FMessages[0].ends_with("LoanDesk.pas\" does not exist.")) << FMessages[0];
  EXPECT_EQ(Tree(), before);
}

// The phases of a run in their order, and how often each showed its progress.
TEST(ProgressTest, MovesInEveryPhase) {
  const tests::TScratch scratch;
  for (int i = 0; i < 60; ++i) {
    const std::string name = "Src/Unit" + std::to_string(i);
    scratch.Write(name + ".pas", "unit X;\r\n{$R *.dfm}\r\nuses DBTables;\r\nQ: TQuery;\r\nend.\r\n");
    scratch.Write(name + ".dfm", "object Form1: TForm1\r\n  object Q: TQuery\r\n  end\r\nend\r\n");
  }
  target::TKVAMigration migration{target::TCatalogue::BuiltIn()};
  mig::TReplaceOptions& options = migration.Options();
  options.Dest = mig::sdFolder;
  options.Directory = "C:\\Src";
  options.BackupDir = "C:\\Back";
  options.Policy.Strict = true;
  TTexts phases;
  int last = 0, total = 0;
  const auto note = [&](mig::TRunPhase phase, int done, int known) {
    if (phases.empty() || phases.back() != mig::NameOf(phase)) {
      phases.emplace_back(mig::NameOf(phase));
      last = 0;
      total = known;
    }
    EXPECT_TRUE(done >= last && done <= known && known == total) << mig::NameOf(phase) << done << known;
    last = done;
  };
  int replacing = 0;
  migration.BDE().OnProgress = [&](const mig::TRunProgress& progress) {
    note(progress.Phase, progress.PhaseDone, progress.PhaseTotal);
  };
  migration.BDE().OnReplacing = [&](mig::TRunPhase phase, int done, int known) {
    note(phase, done, known);
    replacing += phase == mig::TRunPhase::Replacing;
  };
  ASSERT_TRUE(migration.BDE().Replace());
  EXPECT_EQ(phases, (TTexts{"Converting units", "Converting forms", "Writing to the disk",
                            "Replacing original files", "Writing to the disk", "Removing temporary files"}));
  EXPECT_GT(replacing, 1);
}

}  // namespace
