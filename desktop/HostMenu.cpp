#include "desktop/HostMenu.h"

#include <QMenuBar>

namespace desktop {

THostMenu::THostMenu(rtl::TMainMenu& menu, QMenuBar& bar,
                     std::function<void(const std::function<void()>&)> run)
    : FMenu(menu), FBinding(menu, bar, std::move(run)) {
  for (int i = 0; i < menu.Items().Count(); ++i) FOwn.insert(&menu.Items()[i]);
}

rtl::TMenuItem& THostMenu::Add(const TMenuEntry& entry) {
  rtl::TMenuItem& item = FMenu.NewItem();
  item.SetName(entry.Name);
  item.SetCaption(entry.Caption);
  if (entry.OnClick) item.SetOnClick([click = entry.OnClick](rtl::TMenuItem&) { click(); });
  rtl::TMenuItem& parent = *FMenu.FindItem(entry.Parent);
  parent.Insert(parent.Count(), item);
  if (!entry.Keys.isEmpty()) FBinding.ActionOf(item)->setShortcut(entry.Keys);
  return item;
}

void THostMenu::AddLine(const char* parent) {
  Add({parent, "", "-"});
}

QAction* THostMenu::WizardAction() {
  for (int i = 0; i < FMenu.Items().Count(); ++i) {
    rtl::TMenuItem& top = FMenu.Items()[i];
    if (!FOwn.contains(&top) && top.Count() > 0) return FBinding.ActionOf(top[0]);
  }
  return nullptr;
}

QAction& THostMenu::ActionOf(const char* name) {
  return *FBinding.ActionOf(*FMenu.FindItem(name));
}

void TMenuList::Show(const std::vector<std::string>& captions) {
  bool isChanged = false;
  while (FItems.size() < captions.size()) {
    FItems.push_back(&FMenu.Add({FParent, "", "", {}, [this, index = FItems.size()] { FOnClick(index); }}));
  }
  for (size_t i = 0; i < FItems.size(); ++i) {
    const std::string caption = i < captions.size() ? captions[i] : std::string();
    if (FItems[i]->Caption() == caption) continue;
    FItems[i]->SetCaption(caption);
    isChanged = true;
  }
  if (isChanged) FMenu.Sync();
}

}  // namespace desktop
