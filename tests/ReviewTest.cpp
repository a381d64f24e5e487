// The review of a run: what its pages show, how a user moves through them, and what they keep.
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QTextDocument>
#include <QTreeView>

#include "desktop/DiffPane.h"
#include "desktop/FileDiff.h"
#include "desktop/FindingsPage.h"
#include "desktop/MigrationPage.h"
#include "desktop/ReviewPage.h"
#include "target/KVAReplacer.h"
#include "tests/HostWindowFixture.h"

namespace {

namespace fs = std::filesystem;
using desktop::ToQt;
using TKind = desktop::TPaneLine::TKind;
using TTexts = std::vector<std::string>;

// Returns the lines of a pane with their numbers and signs, and with changed words in brackets.
std::string Shown(const desktop::TPaneText& pane) {
  std::string shown;
  const QStringList texts = pane.Text.split('\n');
  for (size_t i = 0; i < pane.Lines.size(); ++i) {
    const desktop::TPaneLine& line = pane.Lines[i];
    QString text = texts[static_cast<qsizetype>(i)];
    for (auto word = line.Words.rbegin(); word != line.Words.rend(); ++word)
      text.insert(word->first + word->second, ']').insert(word->first, '[');
    constexpr std::string_view kSigns = " -+/.";
    shown += std::to_string(line.OldLine) + ' ' + std::to_string(line.NewLine) + ' ' +
             kSigns[static_cast<size_t>(line.Kind)] + text.toStdString() + '\n';
  }
  return shown;
}

struct TDiffRow {
  const char* Name;
  std::string Before, After;
  bool IgnoreSpace;
  desktop::TDiffLayout Layout;
  const char* Left;
  const char* Right;
  std::vector<int> Changes;
};

TEST(FileDiffTest, ShowsChangesInBothLayouts) {
  const std::string block = "a\r\nobject Q: TQuery\r\n  Tag = 1\r\n  Old = 2\r\nend\r\n";
  const std::string changed = "a\r\nobject Q: TKVAQuery\r\n    Tag = 1\r\nend\r\nz";
  const std::vector<TDiffRow> rows = {
      {"side by side",
       block,
       changed,
       true,
       {.SideBySide = true},
       "1 1  a\n2 0 -object Q: [TQuery]\n3 3    Tag = 1\n4 0 -  Old = 2\n5 4  end\n0 0 /\n",
       "1 1  a\n0 2 +object Q: [TKVAQuery]\n3 3      Tag = 1\n0 0 /\n5 4  end\n0 5 +z\n",
       {1, 3, 5}},
      {"in one column, with white space",
       block,
       changed,
       false,
       {.SideBySide = false},
       "1 1  a\n2 0 -object Q: [TQuery]\n0 2 +object Q: [TKVAQuery]\n3 0 -[  ]Tag = 1\n0 3 +[    ]Tag = 1\n"
       "4 0 -  Old = 2\n5 4  end\n0 5 +z\n",
       "",
       {1, 7}},
      {"folds",
       "1\n2\n3\n4\n5\n6\nx\n8\n9\n10\n11\n",
       "1\n2\n3\n4\n5\n6\ny\n8\n9\n10\n11\n",
       false,
       {.SideBySide = false},
       "0 0 .3 unchanged lines\n4 4  4\n5 5  5\n6 6  6\n7 0 -x\n0 7 +y\n8 8  8\n9 9  9\n10 10  10\n"
       "0 0 .1 unchanged line\n",
       "",
       {4}},
      {"whole file, code page and UTF-16",
       "\xE9\nb",
       std::string("\xFF\xFE\xE9\0\n\0c\0", 8),
       false,
       {.SideBySide = false, .WholeFile = true},
       "1 1  \xC3\xA9\n2 0 -b\n0 2 +c\n",
       "",
       {1}},
  };
  for (const TDiffRow& row : rows) {
    SCOPED_TRACE(row.Name);
    const desktop::TFileDiff diff(row.Before, row.After, row.IgnoreSpace);
    const desktop::TDiffPage page = desktop::MakeDiffPage(diff, row.Layout);
    EXPECT_EQ(Shown(page.Left), row.Left);
    EXPECT_EQ(Shown(page.Right), row.Right);
    EXPECT_EQ(page.Changes, row.Changes);
  }
  const desktop::TFileDiff diff(block, changed, true);
  const std::vector<int> newLines = {diff.NewLineOf(1), diff.NewLineOf(2), diff.NewLineOf(4),
                                     diff.NewLineOf(5)};
  EXPECT_EQ(newLines, (std::vector<int>{1, 2, 4, 4}));
}

class ReviewTest : public tests::THostWindowTest {
 protected:
  void Open() { THostWindowTest::Open("C:\\App\\LendDesk.dproj"); }
  void Run() {
    Open();
    Choose(kWizardItem, WholeRun());
    Wait();
  }
  desktop::TReviewPage& Page() {
    return *static_cast<desktop::TReviewPage*>(FWindow.findChild<QWidget*>("ReviewPage"));
  }
  // Waits until the comparisons of the page have ended.
  void Wait() {
    EXPECT_TRUE(QTest::qWaitFor([&] { return Page().IsIdle(); }, 30000));
    QCoreApplication::processEvents();
    TakePicture(FWindow);
  }
  void Press(const char* action) {
    Find<QAction>(action).trigger();
    Wait();
  }
  // Returns the rows of a tree, indented, with their ticks and columns.
  static std::string Rows(const QAbstractItemModel& model, const QModelIndex& parent = {},
                          const std::string& indent = {}) {
    std::string rows;
    for (int i = 0; i < model.rowCount(parent); ++i) {
      const QModelIndex first = model.index(i, 0, parent);
      rows += indent + std::string(1, ".-x"[first.data(Qt::CheckStateRole).toInt()]);
      for (int column = 0; column < model.columnCount(parent); ++column)
        rows += ' ' + first.siblingAtColumn(column).data().toString().toStdString();
      rows += '\n' + Rows(model, first, indent + "  ");
    }
    return rows;
  }

  QString Tab() {
    auto& pages = Find<QTabWidget>("Editors");
    return pages.tabText(pages.currentIndex());
  }
  // Returns the place of the cursor on the page: file, line number and sign.
  std::string Place() {
    auto& pane = Find<desktop::TDiffPane>("Diff");
    const desktop::TPaneLine& line = pane.Lines()[static_cast<size_t>(pane.Row())];
    return Find<QTreeView>("ReviewFiles").currentIndex().data().toString().toStdString() + ' ' +
           std::to_string(line.OldLine) + '/' + std::to_string(line.NewLine);
  }

  // Chooses the undo file of the application in a file dialog.
  TAct PickUndoFile() {
    return [this](QWidget& window) {
      auto& dialog = dynamic_cast<QFileDialog&>(window);
      dialog.findChild<QLineEdit*>("fileNameEdit")
          ->setText(ToQt(FScratch.HostPath("App/RBackup/RExpert.reu")));
      static_cast<QDialog&>(dialog).accept();
    };
  }
  // Returns the line of the editor's cursor.
  QString CurrentLine() {
    int line = 0, column = 0;
    FWindow.CurrentEditor()->getCursorPosition(&line, &column);
    return FWindow.CurrentEditor()->text(line).trimmed();
  }
};

// The steps of a review: counts, all changes in turn, the editor at a change, a patch, ticks that remain.
TEST_F(ReviewTest, LeadsThroughTheChangesOfARun) {
  const fs::path before = FScratch.HostPath("Before");
  fs::copy(FScratch.HostPath("App"), before, fs::copy_options::recursive);
  Run();
  EXPECT_EQ(Tab(), "Changes (18)");
  EXPECT_EQ(Rows(Page().Model()), R"(. Common +18 −16
  . Branch.dfm +3 −2
  . Branch.pas +4 −4
  . Period.dfm +3 −2
  . Period.pas +2 −2
  . Texts.pas +6 −6
. Import +13 −12
  . IMPORT.DFM +6 −5
  . Import.pas +7 −7
. Loans +16 −13
  . LoanDesk.dfm +11 −8
  . LoanDesk.pas +5 −5
. Members +15 −15
  . MemberCard.dfm +3 −3
  . MemberCard.pas +3 −3
  . MemberList.dfm +4 −4
  . MemberList.pas +5 −5
. Reports +9 −11
  . Overdue.dfm +6 −8
  . Overdue.pas +3 −3
. About.pas +1 −1
. DataMod.dfm +21 −24
. DataMod.pas +17 −14
)");
  Press("ReviewSideBySide");

  std::vector<std::string> expected, places = {Place()};
  for (const QModelIndex& index : Page().Model().match(Page().Model().index(0, 0, {}), Qt::DisplayRole, ".",
                                                       -1, Qt::MatchContains | Qt::MatchRecursive)) {
    const desktop::TReviewFile& file =
        Page().Model().Set()->Files()[index.data(desktop::TReviewModel::FileRole).toUInt()];
    const desktop::TFileDiff diff(file.Before, file.After, file.IsForm);
    const desktop::TDiffPage page = desktop::MakeDiffPage(diff, {.SideBySide = false});
    for (const int row : page.Changes) {
      const desktop::TPaneLine& line = page.Left.Lines[static_cast<size_t>(row)];
      expected.push_back(index.data().toString().toStdString() + ' ' + std::to_string(line.OldLine) + '/' +
                         std::to_string(line.NewLine));
    }
  }
  for (size_t i = 0; i < expected.size(); ++i) {
    Press("ReviewNext");
    if (Place() != places.back()) places.push_back(Place());
  }
  EXPECT_EQ(places, expected);
  for (size_t i = 0; i < expected.size(); ++i) Press("ReviewPrevious");
  EXPECT_EQ(Place(), expected.front());

  Find<QLineEdit>("ReviewFilter").setText("about.pas");
  Wait();
  EXPECT_EQ(Find<QLabel>("ReviewStatus").text(), "0 of 18 reviewed, 1 shown");
  auto& tree = Find<QTreeView>("ReviewFiles");
  tree.setCurrentIndex(tree.model()->index(0, 0));
  Wait();
  auto& diff = Find<QPlainTextEdit>("Diff");
  diff.selectAll();
  diff.copy();
  EXPECT_EQ(
      QApplication::clipboard()->text().toStdString(),
      "interface\n\nuses Windows, SysUtils, Classes, Graphics, Forms, Controls, StdCtrls,\n"
      "  Buttons, ExtCtrls, DBTables;\n  Buttons, ExtCtrls, DBTables, Quorel, KVA, Velmar, KVAError;\n\n"
      "type\n  TAboutBox = class(TForm)");
  Press("ReviewReviewed");
  EXPECT_EQ(FScratch.Read("App/RBackup/Review.json"),
            "{\n    \"done\": [\n    ],\n    \"folder\": \"C:\\\\App\",\n    \"reviewed\": [\n        "
            "\"About.pas\"\n    ]\n}\n");
  QTest::keyClick(&diff, Qt::Key_Return);
  EXPECT_EQ(CurrentLine(), "TAboutBox = class(TForm)");

  const std::string patch = Page().Model().Set()->Patch();
  FScratch.Write("all.patch", patch);
  ASSERT_EQ(std::system(("cd '" + before.string() + "' && git apply --unsafe-paths ../all.patch").c_str()),
            0);
  for (const desktop::TReviewFile& file : Page().Model().Set()->Files())
    EXPECT_EQ(FScratch.Read("Before/" + file.Path), FScratch.Read("App/" + file.Path));
}

TEST_F(ReviewTest, ListsWhatIsLeft) {
  Run();
  auto& page = *static_cast<desktop::TFindingsPage*>(FWindow.findChild<QWidget*>("FindingsPage"));
  Choose("WindowFindings");
  auto& table = Find<QTreeView>("Findings");
  EXPECT_EQ(Tab(), "What is left (49)");
  Find<QComboBox>("FindingsGroups").setCurrentIndex(0);
  table.sortByColumn(desktop::TFindingsModel::Place, Qt::AscendingOrder);
  Find<QLineEdit>("FindingsFilter").setText("Loans/LoanDesk.p");
  EXPECT_EQ(Rows(*table.model()),
            ". old-unit warning Loans/LoanDesk.pas(7)  the unit uses DBTables, a unit of the old components\n"
            ". changed-text note Loans/LoanDesk.pas(11)  TQuery became TKVAQuery within a comment\n"
            ". changed-text note Loans/LoanDesk.pas(11)  TQuery became TKVAQuery within a comment\n");
  const QModelIndex last = table.model()->index(2, 0);
  table.setCurrentIndex(last);
  TakePicture(FWindow);
  QTextDocument advice;
  advice.setHtml(Find<QLabel>("Advice").text());
  EXPECT_EQ(
      advice.toPlainText().trimmed().toStdString(),
      "What\nTQuery became TKVAQuery within a comment\nAdvice\nRead the comment again. In a compiler "
      "directive, "
      "change the name back.\nBefore\nlend, or a book alone to take it back. Master TQuery above, detail "
      "TQuery\nAfter\nlend, or a book alone to take it back. Master TKVAQuery above, detail TKVAQuery");
  table.model()->setData(last, Qt::Checked, Qt::CheckStateRole);
  EXPECT_EQ(Find<QLabel>("FindingsStatus").text(), "48 left, 1 done");
  Find<QCheckBox>("FindingsHideDone").setChecked(true);
  EXPECT_EQ(table.model()->rowCount(), 2);
  EXPECT_EQ(
      page.Export(ToQt(FScratch.HostPath("left.txt"))).toStdString(),
      "A report ends in .json, .sarif or .html, and not as \"" + FScratch.HostPath("left.txt") + "\" does.");
  EXPECT_EQ(page.Export(ToQt(FScratch.HostPath("left.json"))), "");
  const QJsonObject report =
      QJsonDocument::fromJson(QByteArray::fromStdString(FScratch.Read("left.json"))).object();
  EXPECT_EQ(report["findings"].toArray().size(), 49);
  EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(FScratch.Read("App/RBackup/Review.json")))
                .object()["done"]
                .toArray()
                .size(),
            1);

  // The place of a finding, in the lines of before, leads to its line of after.
  Find<QLineEdit>("FindingsFilter").setText("DataMod.pas");
  table.setCurrentIndex(table.model()->index(table.model()->rowCount() - 1, 0));
  TakePicture(FWindow);
  QTest::keyClick(&table, Qt::Key_Return);
  Settle();
  EXPECT_EQ(CurrentLine(), "DM.LendingDB.ApplyUpdates([QList]);");

  // At a later time the kept findings are shown, with their ticks, until they are those of another run.
  const std::string kept = FScratch.HostPath("App/RBackup/Findings.json");
  EXPECT_EQ(fs::status(kept).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  const auto exported = [&](const char* name) {
    EXPECT_EQ(page.Export(ToQt(FScratch.HostPath(name))), "");
    return FScratch.Read(name);
  };
  const TTexts before = {exported("left.json"), exported("left.html")};
  Choose("FileReview", {PickUndoFile()});
  EXPECT_EQ((TTexts{exported("left.json"), exported("left.html")}), before);
  EXPECT_EQ(page.findChild<QLabel*>("FindingsStatus")->text(), "48 left, 1 done");
  const fs::path undoFile = FScratch.HostPath("App/RBackup/RExpert.reu");
  fs::last_write_time(undoFile, fs::last_write_time(undoFile) + std::chrono::seconds(1));
  Choose("FileReview", {PickUndoFile()});
  EXPECT_EQ(page.Model().Count(), 0);
}

// An earlier run, from its undo file: what it changed as the files are now, and the ticks of its review.
TEST_F(ReviewTest, ShowsAnEarlierRun) {
  Open();
  target::TKVAMigration migration{target::TCatalogue::BuiltIn()};
  mig::TReplaceOptions& options = migration.Options();
  options.Dest = mig::sdFolder;
  options.Directory = "C:\\App\\Loans";
  options.BackupDir = "C:\\App\\RBackup";
  ASSERT_TRUE(migration.BDE().Replace());
  FScratch.Write("App/RBackup/Review.json", R"({"folder": "C:\\App", "reviewed": ["Loans/LoanDesk.pas"]})");
  fs::remove(FScratch.HostPath("App/Loans/LoanDesk.dfm"));
  Choose("FileReview", {PickUndoFile()});
  EXPECT_EQ(Tab(), "Changes (2)");
  Wait();
  EXPECT_EQ(Rows(Page().Model()), "- Loans +5 −157\n  . LoanDesk.DFM +0 −152\n  x LoanDesk.pas +5 −5\n");

  Choose("WindowFindings");
  EXPECT_EQ(
      Find<QLabel>("Advice").text(),
      "The findings of this run are not known: they are kept only for runs that are started in this window. "
      "Preview the migration, or use \"kvamigrate check\", to see what is left now.");

  FScratch.Write("App/RBackup/RExpert.reu", "");
  Choose("FileReview", {PickUndoFile(), Answer(QMessageBox::Ok)});
  EXPECT_EQ(FMessages.back(), "The undo file \"C:\\App\\RBackup\\RExpert.reu\" lists nothing.");
}

// What has no tick keeps every byte, and the rest becomes what the preview showed.
TEST_F(ReviewTest, ConvertsWhatIsTicked) {
  Open();
  auto& page = *static_cast<desktop::TMigrationPage*>(FWindow.findChild<QWidget*>("MigrationPage"));
  const auto wait = [&] {
    EXPECT_TRUE(QTest::qWaitFor([&] { return page.IsIdle(); }, 30000));
    QCoreApplication::processEvents();
    TakePicture(FWindow);
  };
  wait();
  EXPECT_EQ(Tab(), "Migration");
  EXPECT_EQ(Find<QLabel>("ProjectCounts").text().toStdString(),
            "BDE: 20 objects in 8 forms: TQuery 7, TTable 5, TStoredProc 2, TUpdateSQL 2, TBatchMove 1, "
            "TDatabase 1, ...\nIBX: no objects");
  QTimer stop;
  stop.callOnTimeout([] {
    QWidget* const window = QApplication::activeModalWidget();
    if (window != nullptr && window->objectName() == "ProgressWindow") Click("Stop")(*window);
  });
  stop.start(0);
  Do([&] { Find<QPushButton>("PreviewBDE").click(); }, {});
  stop.stop();
  EXPECT_EQ(Find<QLabel>("PreviewNote").text(), "The preview was stopped. Nothing was changed.");

  Do([&] { Find<QPushButton>("PreviewBDE").click(); }, {});
  wait();
  auto& files = *static_cast<desktop::TReviewPage*>(page.findChild<QWidget*>("PreviewFiles"));
  desktop::TReviewModel& model = files.Model();
  const desktop::TReviewSetPtr set = model.Set();
  for (const desktop::TReviewFile& file : set->Files())
    EXPECT_EQ(FScratch.Read("App/" + file.Path), file.Before);
  EXPECT_FALSE(fs::exists(FScratch.HostPath("App/RBackup")));
  EXPECT_EQ(Rows(model, model.index(0, 0, {})),
            "x Branch +7 −6\n"
            "  x Branch.dfm +3 −2\n"
            "    x BranchForm.QBranches: TQuery → TKVAQuery  \n"
            "  x Branch.pas +4 −4\n"
            "    x 3: TQuery → TKVAQuery  \n"
            "    x 3: TDatabase → TKVAConnection  \n"
            "    x 10: DBTables → DBTables, Quorel, KVA, Velmar, KVAError  \n"
            "    x 16: TQuery → TKVAQuery  \n"
            "    x 32: TQuery → TKVAQuery  \n"
            "x Period +5 −4\n"
            "  x Period.dfm +3 −2\n"
            "    x PeriodFrame.QQuarters: TQuery → TKVAQuery  \n"
            "  x Period.pas +2 −2\n"
            "    x 7: DBTables → DBTables, Quorel, KVA, Velmar, KVAError  \n"
            "    x 14: TQuery → TKVAQuery  \n"
            "x Texts.pas +6 −6\n"
            "  x 5: TQuery → TKVAQuery  \n");

  const auto rowOf = [&](const char* text) {
    return model
        .match(model.index(0, 0, {}), Qt::DisplayRole, text, 1, Qt::MatchStartsWith | Qt::MatchRecursive)
        .value(0);
  };
  model.setData(rowOf("Branch"), Qt::Unchecked, Qt::CheckStateRole);
  model.setData(rowOf("14: TQuery"), Qt::Unchecked, Qt::CheckStateRole);
  EXPECT_EQ(Find<QLabel>("PreviewNote").text(), "Nothing is changed yet. 16 of 18 files are selected.");
  const auto convert = [&](TActs acts) {
    FMessages.clear();
    acts.push_front(TWindowTest::Press(Qt::Key_Return));
    Do([&] { Find<QPushButton>("ConvertTicked").click(); }, std::move(acts));
  };
  convert({TWindowTest::Press(Qt::Key_Return)});
  const std::string replaced = "Replace procedure was performed sucessfully.";
  EXPECT_EQ(Headlines(), (TTexts{"16 files are converted.", replaced}));
  EXPECT_TRUE(FMessages[0].ends_with("Backups: C:\\App\\RBackup")) << FMessages[0];
  EXPECT_TRUE(FMessages[1].ends_with("Way back: C:\\App\\RBackup\\RExpert.reu")) << FMessages[1];
  std::string kept, partial;
  for (const desktop::TReviewFile& file : set->Files()) {
    const std::string now = FScratch.Read("App/" + file.Path);
    if (now == file.Before) {
      kept += file.Path + "\n";
    } else if (now != file.After) {
      partial += file.Path + "\n";
    }
  }
  EXPECT_EQ(kept, "Common/Branch.dfm\nCommon/Branch.pas\n");
  EXPECT_EQ(partial, "Common/Period.pas\n");
  EXPECT_EQ(Tab(), "Changes (16)");

  // The rest, into another backup folder, and taken back at once.
  Choose("WindowMigration");
  Do([&] { Find<QPushButton>("PreviewBDE").click(); }, {});
  wait();
  const desktop::TReviewSetPtr rest = model.Set();
  convert({Click("UndoThisRun"), Click("OKBtn"), TWindowTest::Press(Qt::Key_Return)});
  EXPECT_EQ(Headlines(), (TTexts{std::to_string(rest->Files().size()) + " files are converted.", replaced,
                                 "Files were succefully restored."}));
  EXPECT_TRUE(FMessages[0].ends_with("Backups: C:\\App\\RBackup.2")) << FMessages[0];
  for (const desktop::TReviewFile& file : rest->Files())
    EXPECT_EQ(FScratch.Read("App/" + file.Path), file.Before);
}

}  // namespace
