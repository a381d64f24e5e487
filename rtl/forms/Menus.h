// The state of a main menu, independent of any toolkit: a tree of named items that a view draws.
//
// A main menu creates and owns its items; the tree only arranges them. A new item has no parent until it is
// inserted. All calls come from the main thread.
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
  // Calls the handler, if there is one. Its exceptions propagate to the caller.
  void Click();

  int Count() const { return static_cast<int>(FItems.size()); }
  TMenuItem& operator[](int index) const;  // the child at `index`, from 0; EAssertionFailed if there is none
  TMenuItem* Parent() const { return FParent; }  // null if the item is not inserted
  int IndexOf(const TMenuItem& item) const;      // -1 if it is not a child
  // Inserts `item` before the child at `index`, or at the end if `index` is Count(). Raises
  // EAssertionFailed if the item has another owner or is inserted already.
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
  // Returns a new item without a parent. The menu owns it until the menu is destroyed.
  TMenuItem& NewItem();
  // Returns the first item of that component name in depth-first order, or null. The search is
  // case-sensitive. An empty name matches no item.
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
