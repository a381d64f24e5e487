#include "rtl/forms/Menus.h"

#include <algorithm>

#include "rtl/text/Exceptions.h"

namespace rtl {

void TMenuItem::SetName(std::string_view name) {
  FName = name;
  FOwner.Changed();
}

void TMenuItem::SetCaption(std::string_view caption) {
  FCaption = caption;
  FOwner.Changed();
}

void TMenuItem::Click() {
  // Call a copy, because the handler may replace itself or rebuild the menu.
  if (const TClickEvent onClick = FOnClick) onClick(*this);
}

int TMenuItem::IndexOf(const TMenuItem& item) const {
  const auto at = std::find(FItems.begin(), FItems.end(), &item);
  return at == FItems.end() ? -1 : static_cast<int>(at - FItems.begin());
}

void TMenuItem::Insert(int index, TMenuItem& item) {
  Assert(&item.FOwner == &FOwner, "A menu item can be inserted in its owner's menu only.");
  Assert(!item.FParent && &item != &FOwner.FItems, "The menu item is inserted already.");
  Assert(index >= 0 && index <= Count(), "Menu index out of range.");
  for (const TMenuItem* above = this; above; above = above->FParent) {
    Assert(above != &item, "A menu item cannot be below itself.");
  }
  FItems.insert(FItems.begin() + index, &item);
  item.FParent = this;
  FOwner.Changed();
}

TMenuItem& TMainMenu::NewItem() {
  return *FOwned.emplace_back(std::make_unique<TMenuItem>(*this));
}

namespace {

TMenuItem* FindBelow(const TMenuItem& parent, std::string_view name) {
  for (int i = 0; i < parent.Count(); ++i) {
    TMenuItem& item = parent[i];
    if (item.Name() == name) return &item;
    if (TMenuItem* found = FindBelow(item, name)) return found;
  }
  return nullptr;
}

}  // namespace

TMenuItem* TMainMenu::FindItem(std::string_view name) {
  return name.empty() ? nullptr : FindBelow(FItems, name);
}

TMenuItem& TMenuItem::operator[](int index) const {
  Assert(index >= 0 && index < Count(), "Menu index out of range.");
  return *FItems[static_cast<size_t>(index)];
}

}  // namespace rtl
