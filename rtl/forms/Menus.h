// The state of a main menu without a toolkit: a tree of named items that a view draws.
//
// Items are made by their main menu, which owns them; the tree only arranges them. A new item stands nowhere
// until it is inserted. Everything runs on the main thread.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rtl {

class TMainMenu;

class TMenuItem {
 public:
  using TClickEvent = std::function<void(TMenuItem& sender)>;

  explicit TMenuItem(TMainMenu& owner) : FOwner(owner) {}
  TMenuItem(const TMenuItem&) = delete;
  TMenuItem& operator=(const TMenuItem&) = delete;

  TMainMenu& Owner() const { return FOwner; }
  const std::string& Name() const { return FName; }  // the component name; may be empty
  void SetName(std::string_view name);
  const std::string& Caption() const { return FCaption; }  // "&" marks the accelerator
  void SetCaption(std::string_view caption);
  void SetOnClick(TClickEvent onClick) { FOnClick = std::move(onClick); }
  // Runs the handler, if there is one. Its exceptions go on to the caller.
  void Click();

  int Count() const { return static_cast<int>(FItems.size()); }
  TMenuItem& operator[](int index) const;  // the child at `index`, from 0; EAssertionFailed if there is none
  TMenuItem* Parent() const { return FParent; }  // null while the item stands nowhere
  int IndexOf(const TMenuItem& item) const;      // -1 if it is not a child
  // Puts `item` before the child at `index`, or at the end with Count(). It must be of the same owner and
  // stand nowhere, else EAssertionFailed.
  void Insert(int index, TMenuItem& item);

 private:
  TMainMenu& FOwner;
  std::string FName;
  std::string FCaption;
  TClickEvent FOnClick;
  TMenuItem* FParent = nullptr;
  std::vector<TMenuItem*> FItems;
};

class TMainMenu {
 public:
  TMainMenu() : FItems(*this) {}

  // The root: its children are the top-level items.
  TMenuItem& Items() { return FItems; }
  // A new item, owned by this menu to its end, that stands nowhere yet.
  TMenuItem& NewItem();
  // The first item of that component name in the tree, in the order in which a reader meets them, or null.
  // Case counts, and no item has the empty name.
  TMenuItem* FindItem(std::string_view name);

  // Called after every change of the tree or of an item in it.
  std::function<void()> OnChange;

 private:
  friend class TMenuItem;
  void Changed() {
    if (OnChange) OnChange();
  }

  TMenuItem FItems;
  std::vector<std::unique_ptr<TMenuItem>> FOwned;
};

}  // namespace rtl
