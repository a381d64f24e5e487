// The menu bar of a main menu: shows every item as an action, and follows every change of the menu.
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
  // Neither `menu` nor `bar` is owned; both must outlive the binding. `run` calls the handler of a clicked
  // item.
  TMenuBinding(rtl::TMainMenu& menu, QMenuBar& bar, std::function<void(const std::function<void()>&)> run);
  ~TMenuBinding();

  // Updates the bar to the menu's state. An item with the caption "-" is a separator; one without a caption
  // is hidden. Actions live as long as the binding, so this can be called while a click is handled.
  void Sync();
  // Returns the action of an item of the menu.
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
