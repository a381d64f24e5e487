// The menu of the host's window: adds items to a main menu of the host, which shows them in a menu bar.
//
//   THostMenu menu(host.MainMenu(), *menuBar(), run);
//   menu.Add({"FileMenu", "FileSave", "&Save", QKeySequence::Save, [this] { Save(); }});
//   menu.AddLine("FileMenu");
//   menu.Enable("FileSave", false);
#pragma once

#include <QKeySequence>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "desktop/MenuBinding.h"

namespace desktop {

// One item of the menu.
struct TMenuEntry {
  const char* Parent;   // name of the item whose child it becomes, as the last one
  const char* Name;     // component name
  const char* Caption;  // with "&" before the access key
  QKeySequence Keys = {};
  std::function<void()> OnClick = {};  // unset for an item with children
};

class THostMenu {
 public:
  // Neither `menu` nor `bar` is owned; both must outlive this object. `run` calls the handler of a clicked
  // item.
  THostMenu(rtl::TMainMenu& menu, QMenuBar& bar, std::function<void(const std::function<void()>&)> run);

  rtl::TMenuItem& Add(const TMenuEntry& entry);
  void AddLine(const char* parent);
  // Enables or disables the item of that name, which must exist.
  void Enable(const char* name, bool isEnabled) { ActionOf(name).setEnabled(isEnabled); }
  QAction& ActionOf(const char* name);
  // Returns the first item that a wizard has added: of a top-level menu that was not there from the start.
  // Null if there is none.
  QAction* WizardAction();
  // Shows the menu as it is now, after another has changed it.
  void Sync() { FBinding.Sync(); }
  TMenuBinding& Binding() { return FBinding; }

 private:
  rtl::TMainMenu& FMenu;
  std::set<const rtl::TMenuItem*> FOwn;  // the top-level items from the start
  TMenuBinding FBinding;
};

// A list in the menu that changes, such as the recent projects. Its items come after those that the parent
// had when the list was first shown.
class TMenuList {
 public:
  // Calls `onClick` with the index of a clicked entry, 0-based. The menu must outlive the list.
  TMenuList(THostMenu& menu, const char* parent, std::function<void(size_t index)> onClick)
      : FMenu(menu), FParent(parent), FOnClick(std::move(onClick)) {}
  // Shows these captions, in which "&" marks the access key, in place of the earlier ones.
  void Show(const std::vector<std::string>& captions);

 private:
  THostMenu& FMenu;
  const char* FParent;
  std::function<void(size_t index)> FOnClick;
  std::vector<rtl::TMenuItem*> FItems;
};

}  // namespace desktop
