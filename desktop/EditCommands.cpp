#include "desktop/EditCommands.h"

#include <QInputDialog>

#include "desktop/EditorPages.h"
#include "desktop/FindBar.h"
#include "desktop/HostMenu.h"
#include "desktop/SourceEditor.h"

namespace desktop {

namespace {

constexpr char kEdit[] = "EditMenu";

struct TCommand {
  const char* Name;
  const char* Caption;  // "-": a line
  QKeySequence::StandardKey Key;
  void (*Use)(TSourceEditor& page);
  bool ChangesText;
};
constexpr TCommand kCommands[] = {
    {"EditUndo", "&Undo", QKeySequence::Undo, [](TSourceEditor& page) { page.undo(); }, true},
    {"EditRedo", "&Redo", QKeySequence::Redo, [](TSourceEditor& page) { page.redo(); }, true},
    {"", "-", QKeySequence::UnknownKey, nullptr, false},
    {"EditCut", "Cu&t", QKeySequence::Cut, [](TSourceEditor& page) { page.cut(); }, true},
    {"EditCopy", "&Copy", QKeySequence::Copy, [](TSourceEditor& page) { page.copy(); }, false},
    {"EditPaste", "&Paste", QKeySequence::Paste, [](TSourceEditor& page) { page.paste(); }, true},
    {"EditSelectAll", "Select &All", QKeySequence::SelectAll, [](TSourceEditor& page) { page.selectAll(); },
     false},
    {"", "-", QKeySequence::UnknownKey, nullptr, false},
};
constexpr const char* kSearches[] = {"EditFind", "EditFindNext", "EditFindPrevious", "EditReplace",
                                     "EditGoToLine"};

}  // namespace

TEditCommands::TEditCommands(THostMenu& menu, TEditorPages& pages, TFindBar& findBar, QWidget& window)
    : FMenu(menu), FPages(pages), FFindBar(findBar), FWindow(window) {
  for (const TCommand& command : kCommands) {
    if (command.Use == nullptr) {
      FMenu.AddLine(kEdit);
      continue;
    }
    FMenu.Add({kEdit, command.Name, command.Caption, command.Key, [this, use = command.Use] {
                 if (TSourceEditor* const page = FPages.CurrentEditor()) use(*page);
               }});
  }
  const QKeySequence replaceKeys = Qt::CTRL | Qt::Key_H;
  const QKeySequence lineKeys = Qt::CTRL | Qt::Key_G;
  FMenu.Add({kEdit, "EditFind", "&Find...", QKeySequence::Find, [this] { FFindBar.Open(false); }});
  FMenu.Add({kEdit, "EditFindNext", "Find &Next", Qt::Key_F3, [this] { FFindBar.FindAgain(true); }});
  FMenu.Add({kEdit, "EditFindPrevious", "Find Pre&vious", Qt::SHIFT | Qt::Key_F3,
             [this] { FFindBar.FindAgain(false); }});
  FMenu.Add({kEdit, "EditReplace", "R&eplace...", replaceKeys, [this] { FFindBar.Open(true); }});
  FMenu.Add({kEdit, "EditGoToLine", "&Go to Line...", lineKeys, [this] { AskLine(); }});
}

void TEditCommands::ShowState() {
  TSourceEditor* const page = FPages.CurrentEditor();
  const bool canChange = page != nullptr && !page->isReadOnly();
  for (const TCommand& command : kCommands) {
    if (command.Use != nullptr) FMenu.Enable(command.Name, command.ChangesText ? canChange : page != nullptr);
  }
  for (const char* const search : kSearches) FMenu.Enable(search, page != nullptr);
  FMenu.Enable("EditUndo", canChange && page->isUndoAvailable());
  FMenu.Enable("EditRedo", canChange && page->isRedoAvailable());
}

void TEditCommands::AskLine() {
  TSourceEditor* const page = FPages.CurrentEditor();
  if (page == nullptr) return;
  int line = 0, column = 0;
  page->getCursorPosition(&line, &column);
  bool isChosen = false;
  const int wanted =
      QInputDialog::getInt(&FWindow, "Go to Line", QString("Line (1 to %L1):").arg(page->lines()), line + 1,
                           1, page->lines(), 1, &isChosen);
  if (!isChosen) return;
  page->GoToLine(wanted);
  page->setFocus();
}

}  // namespace desktop
