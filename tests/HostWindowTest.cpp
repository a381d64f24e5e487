// The host's window with the wizard from its loadable module, driven as a user would, on an example
// project.
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <QTreeView>
#include <cmath>

#include "desktop/EditorPages.h"
#include "desktop/HostWindow.h"
#include "desktop/MenuBinding.h"
#include "desktop/ProjectTree.h"
#include "desktop/SourceEditor.h"
#include "desktop/SourceText.h"
#include "tests/WindowTest.h"
#include "win/paths/CodePage.h"

namespace {

namespace fs = std::filesystem;
using TTexts = std::vector<std::string>;

constexpr char kWizardItem[] = "RExpertItemBDE_IBXKORVA";

// The window with the wizard.
class HostWindowTest : public tests::TWindowTest {
 protected:
  void Open() {
    FWindow.show();
    ASSERT_TRUE(FWindow.LoadWizard(win::ToWindowsPath(KVA_EXPERT_MODULE)));
    ASSERT_TRUE(FWindow.OpenProject("C:\\App\\LendDesk.groupproj"));
  }
  std::string Text(const std::string& name) { return FScratch.Read("App/" + name); }

  // Selects the menu item.
  void Choose(const char* item, TActs acts = {}) {
    Do([&] { FWindow.Menu().ActionOf(*FWindow.Host().MainMenu().FindItem(item))->trigger(); },
       std::move(acts));
    TakePicture(FWindow);
  }
  static TAct Answer(QMessageBox::StandardButton button) {
    return [=](QWidget& window) { qobject_cast<QMessageBox*>(&window)->button(button)->click(); };
  }

  template <class T>
  T& Find(const char* name) {
    return *FWindow.findChild<T*>(name);
  }
  QString Shown() { return FWindow.CurrentEditor()->Text(); }
  // Returns a file of the application as an editor shows it.
  QString OnDisk(const std::string& name) {
    return desktop::TSourceText(Text(name), /*isForm=*/false).Text();
  }

  // Types into the current editor as a user does.
  void TypeText(const std::string& text) {
    for (const QChar c : desktop::ToQt(text)) {
      const int key = c == '\n' ? Qt::Key_Return : 0;
      QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, c == '\n' ? QString("\r") : QString(c));
      QApplication::sendEvent(FWindow.CurrentEditor(), &press);
    }
  }
  // Returns the expanded rows of the project tree, indented, missing units in parentheses.
  static TTexts ShownRows(const QTreeView& view) {
    TTexts rows;
    for (QModelIndex row = view.model()->index(0, 0); row.isValid(); row = view.indexBelow(row)) {
      std::string text = row.data().toString().toStdString();
      if (row.data(Qt::ForegroundRole).isValid()) text = "(" + text + ")";
      const std::string form = row.siblingAtColumn(1).data().toString().toStdString();
      if (!form.empty()) text += " | " + form;
      for (QModelIndex above = row.parent(); above.isValid(); above = above.parent()) text.insert(0, " ");
      rows.push_back(text);
    }
    return rows;
  }

  desktop::THostWindow FWindow{FFrontEnd};
};

TEST_F(HostWindowTest, ReplacesTheProjectAndRestoresIt) {
  Open();
  FWindow.OpenFile("C:\\App\\DataMod.dfm");
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  const std::string before = Text("DataMod.pas");
  EXPECT_EQ(Shown(), OnDisk("DataMod.pas"));

  Choose(kWizardItem, WholeRun());
  EXPECT_EQ(
      FMessages,
      TTexts{"Replace procedure was performed sucessfully.\n"
             "Files: 21 read, 18 changed\n"
             "Objects: 20 converted: TQuery 7, TTable 5, TStoredProc 2, TUpdateSQL 2 and 4 more\n"
             "Dropped: 12 properties, 0 of them event handlers: RequestLive 2, ValidateWithMask 2, AliasName "
             "1, DatabaseName 1 and 6 more\n"
             "Left: changed-text 12\nold-unit 9\nold-member 4\ntransaction-line 3\ndropped-login-entry 2\n"
             "old-class 2\nand 5 more rules\n"
             "Backups: C:\\App\\RBackup\n"
             "Way back: C:\\App\\RBackup\\RExpert.reu"});
  EXPECT_NE(Text("DataMod.pas"), before);
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  EXPECT_EQ(Shown(), OnDisk("DataMod.pas"));
  EXPECT_EQ(Find<QPlainTextEdit>("Log").toPlainText(), OnDisk("Wiz_Log.txt"));
  EXPECT_NE(FScratch.Read(FScratch.kSettings).find("[BDE/IBX Migration Wizard]"), std::string::npos);

  FMessages.clear();
  Choose(kWizardItem, {Click("rbModeRestore"), Click("btNext"), Click("btNext"), Click("btFinish"),
                       Click("OKBtn"), Press(Qt::Key_Return)});
  EXPECT_EQ(FMessages, TTexts{"Files were succefully restored.\nFiles: 18 restored"});
  EXPECT_EQ(Text("DataMod.pas"), before);
  EXPECT_EQ(FWindow.Host().ActiveProject()->FileName(), "C:\\App\\LendDesk.dproj") << "it is open again";
  EXPECT_EQ(FWindow.Host().Group()->FileName(), "C:\\App\\LendDesk.groupproj") << "with its group";
  EXPECT_EQ(Find<desktop::TEditorPages>("Editors").FileNames(),
            (TTexts{"C:\\App\\DataMod.dfm", "C:\\App\\DataMod.pas"}));
}

TEST_F(HostWindowTest, ARunThatRaisesIsToldAndTheWindowLivesOn) {
  Open();
  FScratch.Write("App/DataMod.dfm", std::string("\xFF\x0A\0Broken", 9));
  Choose(kWizardItem, WholeRun());
  EXPECT_EQ(Headlines(),
            TTexts{"C:\\App\\DataMod.DFM: Form data at offset 9: the signature TPF0 is missing."});
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  Choose(kWizardItem, {Click("btCancel")});
}

TEST_F(HostWindowTest, AModuleThatCannotBeLoadedIsTold) {
  FWindow.show();
  FScratch.Write("text.so", "no module");
  fs::copy(KVA_EXPERT_MODULE, FScratch.HostPath("cut.so"));
  fs::resize_file(FScratch.HostPath("cut.so"), 5000);
  const std::pair<const char*, std::string> rows[] = {
      {"C:\\missing.so", "Cannot open file \"C:\\missing.so\". The system cannot find the file specified."},
      {"C:\\text.so",
       "C:\\text.so: this module cannot be loaded: " + FScratch.HostPath("text.so") + ": file too short"},
      {"C:\\cut.so", "C:\\cut.so: this module is damaged: its end is missing."},
  };
  for (const auto& [name, reason] : rows) {
    FMessages.clear();
    Do([&, module = name] { EXPECT_FALSE(FWindow.LoadWizard(module)); }, {Press(Qt::Key_Escape)});
    EXPECT_EQ(FMessages, TTexts{"The migration wizard is not available.\n" + reason});
  }
  EXPECT_TRUE(FWindow.OpenProject("C:\\App\\LendDesk.dproj"));
  EXPECT_EQ(FWindow.Host().MainMenu().FindItem(kWizardItem), nullptr);
}

TEST_F(HostWindowTest, TreeShowsTheGroupAndActivates) {
  FScratch.Write("App/Gone.dpr",
                 "program Gone; uses Missing in 'Sub\\Missing.pas', Main in 'Main.pas' {MainForm}; end.");
  Open();
  auto& view = Find<QTreeView>("ProjectTree");
  auto& filter = Find<QLineEdit>("TreeFilter");
  const auto isBold = [&](int project) {
    return view.model()
        ->index(0, 0)
        .model()
        ->index(project, 0, view.model()->index(0, 0))
        .data(Qt::FontRole)
        .value<QFont>()
        .bold();
  };
  EXPECT_TRUE(isBold(0) && !isBold(1));
  emit view.activated(view.model()->index(1, 0, view.model()->index(0, 0)));
  EXPECT_TRUE(!isBold(0) && isBold(1));
  EXPECT_EQ(FWindow.Host().ActiveProject()->FileName(), "C:\\App\\Night.dproj");

  const std::pair<const char*, TTexts> rows[] = {
      {"aboutbox",
       {"LendDesk.groupproj", " LendDesk.dproj", "  About.pas | AboutBox: TAboutBox",
        "   About.dfm | AboutBox: TAboutBox", " Night.dproj", "1 of 12 units"}},
      {"no such unit", {"LendDesk.groupproj", " LendDesk.dproj", " Night.dproj", "0 of 12 units"}},
  };
  for (const auto& [typed, shown] : rows) {
    filter.setText(typed);
    TTexts texts = ShownRows(view);
    texts.push_back(Find<QLabel>("TreeCount").text().toStdString());
    EXPECT_EQ(texts, shown);
  }
  filter.setText("datamod");
  const QModelIndex form =
      view.model()
          ->match(view.model()->index(0, 0), Qt::DisplayRole, "DataMod.dfm", 1, Qt::MatchRecursive)
          .value(0);
  ASSERT_TRUE(form.isValid());
  emit view.activated(form);
  EXPECT_TRUE(Shown().startsWith("object ") && !FWindow.CurrentEditor()->isReadOnly());
  FWindow.OpenFile("C:\\App\\About.dfm");
  EXPECT_TRUE(Shown().startsWith("object ") && !FWindow.CurrentEditor()->isReadOnly()) << "a binary form";
  EXPECT_NE(FScratch.Read(FScratch.kSettings).find("RecentProject0=C:\\\\App\\\\LendDesk.groupproj"),
            std::string::npos);

  filter.clear();
  ASSERT_TRUE(FWindow.OpenProject("C:\\App\\Gone.dpr"));
  EXPECT_EQ(ShownRows(view), (TTexts{"Gone.dpr", " Main.pas | MainForm: TMainForm",
                                     "  Main.dfm | MainForm: TMainForm", " (Sub\\Missing.pas)"}));
}

TEST_F(HostWindowTest, OneUnitOfTheTreeIsConverted) {
  Open();
  const std::string main = Text("Main.pas"), about = Text("About.pas");
  Do(
      [&] {
        Find<desktop::TProjectTree>("Project").OnConvert((*FWindow.Host().Group())[0], "C:\\App\\About.pas");
      },
      WholeRun());
  EXPECT_EQ(Text("Main.pas"), main);
  EXPECT_NE(Text("About.pas"), about);
}

// Every colour of the source is readable on its page, light or dark, even after the theme has changed.
TEST_F(HostWindowTest, ColoursStandOutFromTheirPage) {
  Open();
  Choose(kWizardItem, WholeRun());
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  const auto luminance = [](const QColor& color) {
    const auto linear = [](double c) {
      return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
  };
  const QPalette light = QApplication::palette();
  QPalette dark(QColor(0x353535), QColor(0x2B2B2B));
  dark.setColor(QPalette::Base, QColor(0x1E1E1E));
  const auto contrast = [&](const QColor& text, const QColor& page) {
    const double one = luminance(text), other = luminance(page);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
  };
  for (const QPalette& palette : {light, dark}) {
    QApplication::setPalette(palette);
    desktop::TSourceEditor& page = *FWindow.CurrentEditor();
    EXPECT_TRUE(QTest::qWaitFor([&] {
      return page.lexer()->paper(desktop::TSourceLexer::Default) == palette.color(QPalette::Base);
    }));
    for (int style = 0; style < desktop::TSourceLexer::kStyles; ++style) {
      EXPECT_GE(contrast(page.lexer()->color(style), page.lexer()->paper(style)), 4.5) << style;
    }
    TakePicture(FWindow);
  }
  QApplication::setPalette(light);
}

TEST_F(HostWindowTest, EditsAreMarkedSavedAndAskedFor) {
  Open();
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
  EXPECT_FALSE(FWindow.CurrentEditor()->Editor().Buffer().Modified());
  TypeText("x");
  Choose("FileCloseAll", {Answer(QMessageBox::No)});
  EXPECT_EQ(FWindow.CurrentEditor(), nullptr);
  EXPECT_EQ(Text("About.pas"), "// \xE9\r\n" + before);
}

// What the user can undo: typing, and a run as one step. After all is undone the file is not marked as changed.
TEST_F(HostWindowTest, EverythingCanBeUndone) {
  Open();
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  const QString before = Shown();
  const auto isModified = [&] { return FWindow.CurrentEditor()->Editor().Buffer().Modified(); };
  TypeText("x\ny");
  EXPECT_TRUE(isModified());
  while (FWindow.CurrentEditor()->isUndoAvailable()) Choose("EditUndo");
  EXPECT_EQ(Shown(), before);
  EXPECT_FALSE(isModified());

  Choose(kWizardItem, WholeRun());
  FWindow.OpenFile("C:\\App\\DataMod.pas");
  const QString after = Shown();
  EXPECT_EQ(after, OnDisk("DataMod.pas"));
  EXPECT_NE(after, before);
  EXPECT_FALSE(isModified());
  Choose("EditUndo");
  EXPECT_EQ(Shown(), before) << "the run is one step";
  EXPECT_TRUE(isModified());
  Choose("EditRedo");
  EXPECT_EQ(Shown(), after);
  EXPECT_FALSE(isModified());
}

TEST_F(HostWindowTest, FindsAndReplaces) {
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
  Open();
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
    EXPECT_FALSE(FWindow.CurrentEditor()->Editor().Buffer().Modified()) << "one step of undo";
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
TEST_F(HostWindowTest, BinaryFormsAreSavedAsBinary) {
  Open();
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
  while (FWindow.CurrentEditor()->Editor().Buffer().Modified()) Choose("EditUndo");
  EXPECT_EQ(Text("About.dfm"), good);
}

TEST_F(HostWindowTest, TheCodePageIsGuessedAndChosen) {
  // "const Text = 'Привет, как дела? Сообщение об ошибке базы данных';" in 1251.
  const std::string russian =
      "const Text = '\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA \xE4\xE5\xEB\xE0? "
      "\xD1\xEE\xEE\xE1\xF9\xE5\xED\xE8\xE5 \xEE\xE1 "
      "\xEE\xF8\xE8\xE1\xEA\xE5 \xE1\xE0\xE7\xFB \xE4\xE0\xED\xED\xFB\xF5';\r\n";
  FScratch.Write("App/Russian.pas", russian);
  Open();
  FWindow.OpenFile("C:\\App\\About.pas");
  EXPECT_EQ(
      Find<QLabel>("CodePageText").text().toStdString(),
      "The sources of this project seem to be in code page 1251 (Cyrillic), and are read in 1252 (Western "
      "European).");
  Find<QPushButton>("CodePageKeep").click();
  EXPECT_TRUE(Find<QFrame>("CodePageBar").isHidden());
  FWindow.OpenFile("C:\\App\\Russian.pas");
  EXPECT_EQ(Find<QLabel>("CodePageText").text().toStdString(),
            "Russian.pas seems to be in code page 1251 (Cyrillic), and is read in 1252 (Western European).");
  Find<QPushButton>("CodePageForFile").click();
  EXPECT_TRUE(Find<QFrame>("CodePageBar").isHidden());
  EXPECT_TRUE(Shown().startsWith(QString("const Text = '\u041F\u0440\u0438")));
  EXPECT_FALSE(FWindow.CurrentEditor()->Editor().Buffer().Modified());
  TypeText("\u0416");
  Choose("FileSave");
  EXPECT_EQ(Text("Russian.pas"), "\xC6" + russian);
  EXPECT_EQ(win::GetACP(), 1252u);
  Choose("EditProjectCodePage1251");
  EXPECT_EQ(win::GetACP(), 1251u);
  ASSERT_TRUE(FWindow.OpenProject("C:\\App\\Night.dproj"));
  EXPECT_EQ(win::GetACP(), 1252u);
  ASSERT_TRUE(FWindow.OpenProject("C:\\App\\LendDesk.groupproj"));
  EXPECT_EQ(win::GetACP(), 1251u) << "it is kept for the project";
  ASSERT_TRUE(win::SetACP(1252));
}

TEST_F(HostWindowTest, ACharacterThatTheCodePageLacksIsRefused) {
  Open();
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
  EXPECT_FALSE(FWindow.CurrentEditor()->Editor().Buffer().Modified());
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
