// The host's window with the wizard from its loadable module, driven as a user would, on an example
// project.
#include <QAction>
#include <QClipboard>
#include <QDesktopServices>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextBrowser>
#include <QTreeView>
#include <cmath>

#include "desktop/EditorPages.h"
#include "tests/HostWindowFixture.h"

namespace {

namespace fs = std::filesystem;
using tests::kGroup;
using TTexts = std::vector<std::string>;
using desktop::ToQt;

class HostWindowTest : public tests::THostWindowTest {
 protected:
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
};

TEST_F(HostWindowTest, ReplacesTheProjectAndRestoresIt) {
  Open(kGroup);
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
  EXPECT_EQ(FWindow.Host().Group()->FileName(), kGroup) << "with its group";
  EXPECT_EQ(Find<desktop::TEditorPages>("Editors").FileNames(),
            (TTexts{"C:\\App\\DataMod.dfm", "C:\\App\\DataMod.pas"}));
}

TEST_F(HostWindowTest, ARunThatRaisesIsToldAndTheWindowLivesOn) {
  Open(kGroup);
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
  Open(kGroup);
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

// Each command of the menu of a unit, chosen by its caption.
TEST_F(HostWindowTest, TheTreeHasAMenu) {
  Open(kGroup);
  const std::string main = Text("Main.pas"), about = Text("About.pas");
  auto& view = Find<QTreeView>("ProjectTree");
  TTexts captions;
  const auto choose = [&](const char* caption) {
    const QModelIndex unit =
        view.model()
            ->match(view.model()->index(0, 0), Qt::DisplayRole, "About.pas", 1, Qt::MatchRecursive)
            .value(0);
    QTimer::singleShot(0, &view, [&] {
      auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_NE(menu, nullptr);
      captions.clear();
      for (QAction* const action : menu->actions()) {
        captions.push_back(action->text().toStdString());
        if (action->text() == caption) menu->setActiveAction(action);
      }
      QTest::keyClick(menu, Qt::Key_Return);
    });
    emit view.customContextMenuRequested(view.visualRect(unit).center());
  };
  choose("&Open");
  EXPECT_EQ(captions, (TTexts{"&Open", "&Convert This Unit...", "", "&Show in File Manager", "Copy &Path"}));
  EXPECT_EQ(Shown(), OnDisk("About.pas"));
  choose("Copy &Path");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), FScratch.HostPath("App/About.pas"));
  QTextBrowser browser;  // has a signal with a URL
  QUrl shown;
  QObject::connect(&browser, &QTextBrowser::anchorClicked, [&](const QUrl& url) { shown = url; });
  QDesktopServices::setUrlHandler("file", &browser, "anchorClicked");
  choose("&Show in File Manager");
  QDesktopServices::unsetUrlHandler("file");
  EXPECT_EQ(shown.toLocalFile().toStdString(), FScratch.HostPath("App"));
  Do([&] { choose("&Convert This Unit..."); }, WholeRun());
  EXPECT_EQ(Text("Main.pas"), main);
  EXPECT_NE(Text("About.pas"), about);
}

// What the user drops is opened, wherever it is dropped, and never moved or inserted as text.
TEST_F(HostWindowTest, FilesAreDropped) {
  FScratch.Write("App/Two/A.dpr", "program A; end.");
  FScratch.Write("App/Two/B.dpr", "program B; end.");
  FWindow.show();
  const TAct cancel = [](QWidget& window) {
    EXPECT_TRUE(dynamic_cast<QFileDialog&>(window).directory().path().endsWith("App/Two"));
    window.close();
  };
  struct TRow {
    std::vector<const char*> Files;
    std::string Project;  // that is open then
    const char* InFront;  // the file of the current editor; nullptr: none
    std::vector<std::string> Messages = {};
    TActs Acts = {};
  };
  const std::string lendDesk = "C:\\App\\LendDesk.dproj";
  const TRow rows[] = {
      {{"LendDesk.dproj"}, lendDesk, nullptr},
      {{""}, kGroup, nullptr},
      {{"About.dfm"}, kGroup, "About.dfm"},
      {{"About.pas", "Gone.pas", "Main.pas"},
       kGroup,
       "Main.pas",
       {"C:\\App\\Gone.pas: this file does not exist."},
       {Press(Qt::Key_Return)}},
      {{"Gone.dpr"},
       kGroup,
       "Main.pas",
       {"Cannot open file \"C:\\App\\Gone.dpr\". The system cannot find the file specified."},
       {Press(Qt::Key_Return)}},
      {{"Two"}, kGroup, "Main.pas", {}, {cancel}},  // the user chooses one of two
      {{"DataMod.pas", "LendDesk.dproj"}, lendDesk, "DataMod.pas"},
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Files.front());
    FMessages.clear();
    QList<QUrl> urls;
    for (const char* const name : row.Files)
      urls += QUrl::fromLocalFile(ToQt(FScratch.HostPath(std::string("App/") + name)));
    QWidget* const target = FWindow.CurrentEditor() ? FWindow.CurrentEditor()->viewport() : &FWindow;
    Do(
        [&] {
          Drop(*target, urls);
          QApplication::processEvents();
        },
        row.Acts);
    const host::TProjectGroup& group = *FWindow.Host().Group();
    EXPECT_EQ(group.FileName().empty() ? group[0].FileName() : group.FileName(), row.Project);
    EXPECT_EQ(FMessages, row.Messages);
    ASSERT_EQ(FWindow.CurrentEditor() != nullptr, row.InFront != nullptr);
    if (row.InFront == nullptr) continue;
    EXPECT_EQ(Shown(), OnDisk(row.InFront));
    EXPECT_FALSE(IsModified());
  }
}

TEST_F(HostWindowTest, KeysStartTheWizard) {
  Open(kGroup);
  QApplication::setActiveWindow(&FWindow);
  Do([&] { QTest::keyClick(&FWindow, Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier); },
     {Click("btCancel")});
}

// Every colour of the source is readable on its page, light or dark, even after the theme has changed.
TEST_F(HostWindowTest, ColoursStandOutFromTheirPage) {
  Open(kGroup);
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
    const auto isShown = [&] {
      return page.lexer()->paper(desktop::TSourceLexer::Default) == palette.color(QPalette::Base);
    };
    EXPECT_TRUE(QTest::qWaitFor(isShown, 30000));
    for (int style = 0; style <= desktop::TSourceLexer::Asm; ++style) {
      EXPECT_GE(contrast(page.lexer()->color(style), page.lexer()->paper(style)), 4.5) << style;
    }
    EXPECT_GE(contrast(desktop::LinkColor(palette), palette.color(QPalette::Base)), 4.5);
    TakePicture(FWindow);
  }
  QApplication::setPalette(light);
}

class RestartTest : public tests::TWindowTest {};

TEST_F(RestartTest, PanesAreWhereTheyWere) {
  for (const bool isFirst : {true, false}) {
    desktop::THostWindow window(FFrontEnd);
    window.show();
    TakePicture(window);
    auto* const tree = window.findChild<QDockWidget*>("TreePane");
    EXPECT_EQ(window.dockWidgetArea(tree), isFirst ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea);
    EXPECT_EQ(window.size() == QSize(700, 500), !isFirst);
    window.addDockWidget(Qt::RightDockWidgetArea, tree);
    window.resize(700, 500);
    EXPECT_TRUE(window.close());
  }
}

}  // namespace
