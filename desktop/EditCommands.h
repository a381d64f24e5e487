// The Edit menu of the host's window: undo, clipboard, find and replace, go to a line.
#pragma once

class QWidget;

namespace desktop {

class TEditorPages;
class TFindBar;
class THostMenu;

class TEditCommands {
 public:
  // Adds the items to the item "EditMenu". Nothing is owned; all must outlive this object. `window` is the
  // parent of questions.
  TEditCommands(THostMenu& menu, TEditorPages& pages, TFindBar& findBar, QWidget& window);

  // Enables the items that can be used now.
  void ShowState();

 private:
  void AskLine();

  THostMenu& FMenu;
  TEditorPages& FPages;
  TFindBar& FFindBar;
  QWidget& FWindow;
};

}  // namespace desktop
