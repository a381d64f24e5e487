// The editors of the host's window: what they show, what they save, and what they refuse.
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>

#include "tests/HostWindowFixture.h"
#include "win/paths/CodePage.h"

namespace {

namespace fs = std::filesystem;
using tests::kGroup;
using TTexts = std::vector<std::string>;

class EditorTest : public tests::THostWindowTest {};

TEST_F(EditorTest, EditsAreMarkedSavedAndAskedFor) {
  Open(kGroup);
  FWindow.OpenFile("C:\\App\\About.pas");
  const std::string before = Text("About.pas");
  TypeText("// \xC3\xA9\n");
  EXPECT_TRUE(FWindow.windowTitle().startsWith("LendDesk"));
  EXPECT_EQ(Text("About.pas"), before);
  Choose("FileClose", {Answer(QMessageBox::Cancel)});
  ASSERT_NE(FWindow.CurrentEditor(), nullptr);
  const fs::path file = FScratch.HostPath("App/About.pas");
  fs::permissions(file, fs::perms::owner_read);
  Choose("FileSave", {Answer(QMessageBox::Ok)});
  EXPECT_EQ(FMessages.back(), "C:\\App\\About.pas: cannot be saved. Access is denied.");
  EXPECT_EQ(Text("About.pas"), before);
  fs::permissions(file, fs::perms::owner_write, fs::perm_options::add);
  Choose("FileSave");
  EXPECT_EQ(Text("About.pas"), "// \xE9\r\n" + before);
  EXPECT_FALSE(IsModified());
  TypeText("x");
  Choose("FileCloseAll", {Answer(QMessageBox::No)});
  EXPECT_EQ(FWindow.CurrentEditor(), nullptr);
  EXPECT_EQ(Text("About.pas"), "// \xE9\r\n" + before);
}

// What the user can undo: typing, and a run as one step. After all is undone the file is not marked as
// changed.
TEST_F(EditorTest, EverythingCanBeUndone) {
  Open(kGroup);
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  const QString before = Shown();
  TypeText("x\ny");
  EXPECT_TRUE(IsModified());
  while (FWindow.CurrentEditor()->isUndoAvailable()) Choose("EditUndo");
  EXPECT_EQ(Shown(), before);
  EXPECT_FALSE(IsModified());

  Choose(kWizardItem, WholeRun());
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  const QString after = Shown();
  EXPECT_EQ(after, OnDisk("DataMod.pas"));
  EXPECT_NE(after, before);
  EXPECT_FALSE(IsModified());
  Choose("EditUndo");
  EXPECT_EQ(Shown(), before) << "the run is one step";
  EXPECT_TRUE(IsModified());
  Choose("EditRedo");
  EXPECT_EQ(Shown(), after);
  EXPECT_FALSE(IsModified());
}

TEST_F(EditorTest, FindsAndReplaces) {
  struct TRow {
    const char* Text;
    bool IsRegExp, MatchCase, WholeWords;
    const char *Replacement, *Result, *Outcome;
  };
  const std::string start = "Query1, query2\r\nQuery10 \xE9\r\n";
  const TRow rows[] = {
      {"query1", false, false, false, "Q", "Q, query2\nQ0 \u00E9\n", "2 replaced"},
      {"query1", false, false, true, "Q", "Q, query2\nQuery10 \u00E9\n", "1 replaced"},
      {"query", false, true, false, "Q", "Query1, Q2\nQuery10 \u00E9\n", "1 replaced"},
      {"(\\w+?)(\\d+)", true, true, false, "\\2\\1", "1Query, 2query\n10Query \u00E9\n", "3 replaced"},
      {"^", true, false, false, "- ", "- Query1, query2\n- Query10 \u00E9\n- ", "3 replaced"},
      {"(", true, false, false, "", "Query1, query2\nQuery10 \u00E9\n", "\"(\" is not a regular expression."},
      {"none", false, false, false, "Q", "Query1, query2\nQuery10 \u00E9\n", "No match"},
  };
  FScratch.Write("App/Find.pas", start);
  Open(kGroup);
  FWindow.OpenFile("C:\\App\\Find.pas");
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Text);
    Choose("EditReplace");
    Find<QLineEdit>("FindText").setText(row.Text);
    Find<QLineEdit>("ReplaceText").setText(row.Replacement);
    Find<QCheckBox>("FindRegExp").setChecked(row.IsRegExp);
    Find<QCheckBox>("FindCase").setChecked(row.MatchCase);
    Find<QCheckBox>("FindWords").setChecked(row.WholeWords);
    Find<QToolButton>("ReplaceAll").click();
    EXPECT_EQ(Shown().toStdString(), row.Result);
    EXPECT_EQ(Find<QLabel>("FindOutcome").text().toStdString(), row.Outcome);
    Choose("EditUndo");
    EXPECT_FALSE(IsModified()) << "one step of undo";
  }
  Find<QLineEdit>("FindText").setText("q");
  Find<QCheckBox>("FindRegExp").setChecked(false);
  TTexts places;
  for (int i = 0; i < 4; ++i) {
    Choose("EditFindNext");
    places.push_back(Find<QLabel>("Position").text().toStdString());
  }
  EXPECT_EQ(places,
            (TTexts{"Line 1, Column 2", "Line 1, Column 10", "Line 2, Column 2", "Line 1, Column 2"}));
}

// A binary form is edited as text. What is no form is told with its line and stays in the editor.
TEST_F(EditorTest, BinaryFormsAreSavedAsBinary) {
  Open(kGroup);
  FWindow.OpenFile("C:\\App\\About.dfm");
  const std::string before = Text("About.dfm");
  FWindow.CurrentEditor()->GoToLine(2);
  TypeText("Tag = 7\n");
  Choose("FileSave");
  EXPECT_EQ(Text("About.dfm").substr(0, 3), before.substr(0, 3));
  const auto withoutIndents = [](QString text) {
    return text.remove(QRegularExpression("^ +", QRegularExpression::MultilineOption)).toStdString();
  };
  EXPECT_EQ(withoutIndents(desktop::TSourceText(Text("About.dfm"), /*isForm=*/true).Text()),
            withoutIndents(Shown()));
  EXPECT_NE(Text("About.dfm"), before);

  const std::string good = Text("About.dfm");
  TypeText("Tag = = 8\n");
  const QString bad = Shown();
  Choose("FileSave", {Answer(QMessageBox::Ok)});
  EXPECT_EQ(FMessages.back(),
            "C:\\App\\About.dfm: Form text, line 3: a value expected (object AboutBox, property Tag).");
  EXPECT_EQ(Shown(), bad);
  EXPECT_EQ(Text("About.dfm"), good);
  while (IsModified()) Choose("EditUndo");
  EXPECT_EQ(Text("About.dfm"), good);
}

TEST_F(EditorTest, TheCodePageIsGuessedAndChosen) {
  // "const Text = 'Привет, как дела? Сообщение об ошибке базы данных';" in 1251.
  const std::string russian =
      "const Text = '\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA \xE4\xE5\xEB\xE0? "
      "\xD1\xEE\xEE\xE1\xF9\xE5\xED\xE8\xE5 \xEE\xE1 "
      "\xEE\xF8\xE8\xE1\xEA\xE5 \xE1\xE0\xE7\xFB \xE4\xE0\xED\xED\xFB\xF5';\r\n";
  FScratch.Write("App/Russian.pas", russian);
  Open(kGroup);
  FWindow.OpenFile("C:\\App\\About.pas");
  EXPECT_EQ(
      Find<QLabel>("CodePageText").text().toStdString(),
      "The sources of this project seem to be in code page 1251 (Cyrillic), and are read in 1252 (Western "
      "European).");
  // In a narrow window the buttons are below the text.
  auto& text = Find<QLabel>("CodePageText");
  auto& keep = Find<QPushButton>("CodePageKeep");
  for (const bool isNarrow : {false, true}) {
    FWindow.resize(isNarrow ? 700 : 1900, 600);
    const auto isLaidOut = [&] {
      const QPoint textAt = text.mapTo(&FWindow, QPoint()), keepAt = keep.mapTo(&FWindow, QPoint());
      return (textAt.x() < keepAt.x() && textAt.y() < keepAt.y()) == isNarrow;
    };
    EXPECT_TRUE(QTest::qWaitFor(isLaidOut, 30000)) << isNarrow;
    TakePicture(FWindow);
    ExpectWholeTexts(FWindow);
  }
  keep.click();
  EXPECT_TRUE(Find<QFrame>("CodePageBar").isHidden());
  FWindow.OpenFile("C:\\App\\Russian.pas");
  EXPECT_EQ(Find<QLabel>("CodePageText").text().toStdString(),
            "Russian.pas seems to be in code page 1251 (Cyrillic), and is read in 1252 (Western European).");
  Find<QPushButton>("CodePageForFile").click();
  EXPECT_TRUE(Find<QFrame>("CodePageBar").isHidden());
  EXPECT_TRUE(Shown().startsWith(QString("const Text = '\u041F\u0440\u0438")));
  EXPECT_FALSE(IsModified());
  TypeText("\u0416");
  Choose("FileSave");
  EXPECT_EQ(Text("Russian.pas"), "\xC6" + russian);
  EXPECT_EQ(win::GetACP(), 1252u);
  Choose("EditProjectCodePage1251");
  EXPECT_EQ(win::GetACP(), 1251u);
  ASSERT_TRUE(FWindow.OpenProject("C:\\App\\Night.dproj"));
  EXPECT_EQ(win::GetACP(), 1252u);
  ASSERT_TRUE(FWindow.OpenProject(kGroup));
  EXPECT_EQ(win::GetACP(), 1251u) << "it is kept for the project";
  ASSERT_TRUE(win::SetACP(1252));
}

TEST_F(EditorTest, ACharacterThatTheCodePageLacksIsRefused) {
  Open(kGroup);
  FWindow.OpenFile("C:\\App\\About.pas");
  const QString before = Shown();
  FWindow.CurrentEditor()->OnRefused = [this](const QString& text) {
    FMessages.push_back(text.toStdString());
  };
  TypeText("\xD0\x96");
  QApplication::clipboard()->setText("a\u0416");
  Choose("EditPaste");
  QCoreApplication::processEvents();
  EXPECT_EQ(
      FMessages,
      TTexts(2,
             "\"\xD0\x96\" was not entered: this file is in Code page 1252, which has no such character."));
  EXPECT_EQ(Shown(), before);
  EXPECT_FALSE(IsModified());
}

// While a task loads it, the page takes no typing and can be closed; in the end it shows what is on the disk.
TEST_F(EditorTest, ALargeFileIsLoadedAside) {
  std::string large;
  for (int i = 1; large.size() < desktop::TSourceLoading::kLarge; ++i)
    large += "  // line " + std::to_string(i) + " of a unit\r\n";
  const std::string name = "C:\\App\\Large.pas";
  FScratch.Write("App/Large.pas", large);
  Open(kGroup);
  const auto wait = [&] {
    return QTest::qWaitFor([&] { return !FWindow.CurrentEditor()->IsLoading(); }, 30000);
  };
  FWindow.OpenFile(name);
  Choose("FileClose");
  QCoreApplication::processEvents();
  EXPECT_EQ(FWindow.CurrentEditor(), nullptr);

  FWindow.OpenFile(name);
  ASSERT_TRUE(FWindow.CurrentEditor()->IsLoading());
  EXPECT_EQ(Find<QLabel>("EditorState").text(), "Loading...");
  EXPECT_TRUE(Find<QLabel>("LoadingNotice").isVisible());
  FWindow.CurrentEditor()->GoToLine(5000, 3);
  TypeText("x");
  FScratch.Write("App/Large.pas", "{ newer }" + large);
  EXPECT_TRUE(wait());
  EXPECT_FALSE(IsModified());
  EXPECT_EQ(Shown(), OnDisk("Large.pas"));
  EXPECT_EQ(Find<QLabel>("Position").text(), "Line 5000, Column 3");
  EXPECT_FALSE(Find<QLabel>("LoadingNotice").isVisible());

  const QString before = Shown();
  TypeText("x");
  Choose("FileSave");
  EXPECT_FALSE(FWindow.CurrentEditor()->IsLoading()) << "its text is known";
  FScratch.Write("App/Large.pas", large);
  EXPECT_TRUE(FWindow.CurrentEditor()->Editor().Module()->Reload());
  TypeText("y");
  EXPECT_TRUE(wait());
  EXPECT_EQ(Shown(), OnDisk("Large.pas"));
  Choose("EditUndo");
  Choose("EditUndo");
  EXPECT_EQ(Shown(), before);

  FWindow.CurrentEditor()->Editor().Buffer().Revert();
  EXPECT_TRUE(wait());
  Choose("FileClose");
  FWindow.OpenFile(name);
  fs::remove(FScratch.HostPath("App/Large.pas"));
  Do([&] { EXPECT_TRUE(QTest::qWaitFor([&] { return FWindow.CurrentEditor() == nullptr; }, 30000)); },
     {Answer(QMessageBox::Ok)});
  EXPECT_EQ(FMessages.back(),
            "Cannot open file \"" + name + "\". The system cannot find the file specified.");
}

struct TEncodingCase {
  const char* Name;
  std::string Bytes;
  bool IsForm;
  const char* Text;
  bool IsEditable;
};

TEST(SourceTextTest, GivesBackTheBytesOrIsReadOnly) {
  const std::vector<TEncodingCase> cases = {
      {"code page", "a\xE9\xA0\r\nb", false, "a\xC3\xA9\xC2\xA0\nb", true},
      {"LF alone", "a\nb\n", false, "a\nb\n", true},
      {"UTF-8", "\xEF\xBB\xBF\xC3\xA9\r\n", false, "\xC3\xA9\n", true},
      {"UTF-16", std::string("\xFF\xFE\x16\x04\r\0\n\0", 8), false, "\xD0\x96\n", true},
      {"mixed line ends", "a\r\nb\nc\rd", false, "a\r\nb\nc\rd", true},
      {"a control character of the code page", "a\x81", false, nullptr, true},
      {"malformed UTF-8", "\xEF\xBB\xBFx\xFF", false, nullptr, false},
      {"half a character of UTF-16", "\xFF\xFEx", false, "", false},
      {"a damaged binary form", std::string("\xFF\x0A\x00T", 4), true, "", false},
  };
  for (const TEncodingCase& test : cases) {
    SCOPED_TRACE(test.Name);
    const desktop::TSourceText text(test.Bytes, test.IsForm);
    if (test.Text != nullptr) {
      EXPECT_EQ(text.Text().toStdString(), test.Text);
    }
    EXPECT_EQ(text.ReadOnlyReason().isEmpty(), test.IsEditable) << text.ReadOnlyReason().toStdString();
    QString missing;
    if (test.IsEditable) {
      EXPECT_EQ(text.Encode(text.Text(), missing), test.Bytes);
    }
  }
}

TEST(SourceTextTest, EveryCharacterOfEveryCodePageComesBackOrIsRefused) {
  for (const uint32_t page : win::SupportedCodePages()) {
    ASSERT_TRUE(win::SetACP(page));
    for (int lead = 128; lead < 256; ++lead) {
      for (const std::string& bytes :
           {std::string{static_cast<char>(lead)}, std::string{static_cast<char>(lead), 'A'}}) {
        const desktop::TSourceText text(bytes, false);
        QString missing;
        const bool isEditable = text.ReadOnlyReason().isEmpty();
        EXPECT_EQ(text.Encode(text.Text(), missing) == bytes, isEditable) << page;
      }
    }
  }
  ASSERT_TRUE(win::SetACP(932));
  EXPECT_TRUE(desktop::TSourceText("\x83\x65", false).ReadOnlyReason().isEmpty());
  ASSERT_TRUE(win::SetACP(1252));
}

}  // namespace
