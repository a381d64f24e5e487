// The menu bar of a main menu: every item as an action, every change of the menu shown.
#pragma once

#include <QAction>
#include <functional>
#include <memory>
#include <unordered_map>

#include "rtl/forms/Menus.h"

class QMenuBar;

namespace desktop {

class TMenuBinding {
 public:
  // Neither is owned, and both live longer. `run` is what carries a click to the item's handler.
  TMenuBinding(rtl::TMainMenu& menu, QMenuBar& bar, std::function<void(const std::function<void()>&)> run);
  ~TMenuBinding();

  // Brings the bar to the menu's state. An item with the caption "-" is a line, one without a caption is not
  // seen. Actions live as long as the binding, so that this can be called from within a click.
  void Sync();
  // The action of an item of the menu.
  QAction* ActionOf(rtl::TMenuItem& item);

 private:
  void SyncItems(rtl::TMenuItem& parent, QWidget& place);

  rtl::TMainMenu& FMenu;
  QMenuBar& FBar;
  std::function<void(const std::function<void()>&)> FRun;
  std::unordered_map<const rtl::TMenuItem*, std::unique_ptr<QAction>> FActions;
  std::vector<std::unique_ptr<QMenu>> FMenus;
};

}  // namespace desktop
