// The state of the controls of a form, without anything that draws them.
//
// A control holds what a user can see and change: text, mark, list, whether it is enabled. Program code reads
// and sets that state. A front end (rtl/Application.h) shows it, hears of each change through the form's
// view, and reports what the user does through the operations marked "the user": these change the state as a
// widget would and then fire the control's event, while a setter fires nothing. An event holds the name of a
// published handler of the form (rtl/Forms.h).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rtl/text/StringList.h"

namespace rtl {

class TAction;
class TControl;
class TForm;

enum class TControlKind {
  Label,
  RadioButton,
  CheckBox,
  Edit,
  ComboBox,
  CheckListBox,
  Button,
  PageControl,
  TabSheet,
  Image,
  ScrollBox,
  Bevel,
};

// What a view has to show anew.
enum class TChange { Text, Checked, Enabled, Items, ActivePage, Picture };

// Modal results: with them a button closes its form, and ShowModal returns them.
inline constexpr int mrNone = 0;
inline constexpr int mrOk = 1;
inline constexpr int mrCancel = 2;
inline constexpr int mrYes = 6;
inline constexpr int mrNo = 7;

// One row of a form resource: a control and its design-time properties. Which of them have a meaning depends
// on the kind.
struct TControlRow {
  std::string_view Parent;  // the control in which it stands; empty for the form
  TControlKind Kind = TControlKind::Label;
  std::string_view Name;
  std::string_view Text = {};          // caption, or the text of an edit
  bool Checked = false;                // radio button, check box
  bool Bold = false;                   // label
  bool Default = false;                // button: answers the Enter key
  bool Cancel = false;                 // button: answers the Cancel key
  int ModalResult = mrNone;            // button
  std::string_view Action = {};        // button, check box: takes caption and enabling from it
  std::string_view FocusControl = {};  // label: its accelerator leads there
  std::string_view OnClick = {};       // the event of radio button, check box and button
  std::string_view OnChange = {};      // the event of edit and combo box
};

class TControl {
 public:
  TControl(TForm& form, TControl* parent, const TControlRow& row);
  virtual ~TControl() = default;
  TControl(const TControl&) = delete;
  TControl& operator=(const TControl&) = delete;

  TControlKind Kind() const { return FKind; }
  const std::string& Name() const { return FName; }
  TForm& Form() const { return FForm; }
  TControl* Parent() const { return FParent; }                          // null: it stands on the form itself
  const std::vector<TControl*>& Controls() const { return FControls; }  // what stands in it, in tab order

  const std::string& Text() const { return FText; }
  void SetText(std::string_view text);
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool enabled);

  // Makes it the form's active control.
  void SetFocus();
  // Takes the design-time properties of `row` once more: a derived form changes what it inherits.
  virtual void Assign(const TControlRow& row);

 protected:
  void Changed(TChange what) const;
  void Fire(const std::string& handler) const;

 private:
  friend class TForm;
  TForm& FForm;
  TControl* FParent;
  TControlKind FKind;
  std::string FName;
  std::string FText;
  std::vector<TControl*> FControls;
  bool FEnabled = true;
};

class TLabel : public TControl {
 public:
  TLabel(TForm& form, TControl* parent, const TControlRow& row);
  bool Bold() const { return FBold; }
  TControl* FocusControl() const;  // null without one
  void Assign(const TControlRow& row) override;

 private:
  bool FBold = false;
  std::string FFocusControl;
};

// What the user clicks.
class TButtonControl : public TControl {
 public:
  using TControl::TControl;
  // The user: no effect on a disabled control. A linked action is brought up to date first.
  void Click();
  TAction* Action() const { return FAction; }  // null without one
  void Assign(const TControlRow& row) override;

 protected:
  virtual void ChangeOnClick() = 0;

 private:
  TAction* FAction = nullptr;
  std::string FOnClick;
};

class TRadioButton : public TButtonControl {
 public:
  TRadioButton(TForm& form, TControl* parent, const TControlRow& row);
  bool Checked() const { return FChecked; }
  // True clears all other radio buttons of its parent.
  void SetChecked(bool checked);
  void Assign(const TControlRow& row) override;

 protected:
  void ChangeOnClick() override { SetChecked(true); }

 private:
  bool FChecked = false;
};

class TCheckBox : public TButtonControl {
 public:
  TCheckBox(TForm& form, TControl* parent, const TControlRow& row);
  bool Checked() const { return FChecked; }
  void SetChecked(bool checked);
  void Assign(const TControlRow& row) override;

 protected:
  void ChangeOnClick() override { SetChecked(!FChecked); }

 private:
  bool FChecked = false;
};

class TButton : public TButtonControl {
 public:
  TButton(TForm& form, TControl* parent, const TControlRow& row);
  bool Default() const { return FDefault; }
  bool Cancel() const { return FCancel; }
  int ModalResult() const { return FModalResult; }
  void Assign(const TControlRow& row) override;

 protected:
  void ChangeOnClick() override;

 private:
  bool FDefault = false;
  bool FCancel = false;
  int FModalResult = mrNone;
};

class TEdit : public TControl {
 public:
  TEdit(TForm& form, TControl* parent, const TControlRow& row);
  // The user: the text has become `text` by typing, or by picking from a list.
  void Enter(std::string_view text);
  void Assign(const TControlRow& row) override;

 protected:
  void FireChange();

 private:
  std::string FOnChange;
};

// An edit with a list from which its text can be picked.
class TComboBox : public TEdit {
 public:
  using TEdit::TEdit;
  const TStringList& Items() const { return FItems; }
  void SetItems(TStringList items);
  // The user: picks the entry at `index`, counted from 0; a change also where the text was the same.
  void Pick(int index);

 private:
  TStringList FItems;
};

// A list of entries, each with a mark. Indices count from 0.
class TCheckListBox : public TControl {
 public:
  using TControl::TControl;
  int Count() const { return static_cast<int>(FEntries.size()); }
  const std::string& Entry(int index) const { return FEntries[static_cast<size_t>(index)].Name; }
  bool Checked(int index) const { return FEntries[static_cast<size_t>(index)].Checked; }
  void SetEntries(const std::vector<std::string>& names);  // none of them marked
  void SetChecked(int index, bool checked);                // also the user's click on a mark
  void CheckAll(bool checked);
  void RemoveUnchecked();
  void Clear();

 private:
  struct TEntry {
    std::string Name;
    bool Checked = false;
  };
  std::vector<TEntry> FEntries;
};

// A stack of pages, of which one is seen. The pages are the tab sheets in it. Indices count from 0.
class TPageControl : public TControl {
 public:
  using TControl::TControl;
  int PageCount() const { return static_cast<int>(Controls().size()); }
  int ActivePageIndex() const { return FActivePageIndex; }
  TControl& ActivePage() const { return *Controls()[static_cast<size_t>(FActivePageIndex)]; }
  void SetActivePageIndex(int index);

 private:
  int FActivePageIndex = 0;
};

// A picture that the front end supplies: one of the system's icons, or the form's own by the control's name.
class TImage : public TControl {
 public:
  using TControl::TControl;
  int SystemIcon() const { return FSystemIcon; }  // an icon identifier such as 32514, or 0
  void SetSystemIcon(int identifier);

 private:
  int FSystemIcon = 0;
};

class TTabSheet : public TControl {
  using TControl::TControl;
};
class TScrollBox : public TControl {
  using TControl::TControl;
};
class TBevel : public TControl {
  using TControl::TControl;
};

}  // namespace rtl
