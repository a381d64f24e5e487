// The state of the controls of a form, independent of any toolkit.
//
// A control holds the state that a user can see and change: text, check mark, list, whether it is enabled.
// Program code reads and sets that state. A front end (rtl/forms/Application.h) shows it, is notified of
// each change through the form's view, and reports user input through the operations marked "User input:".
// Those change the state as a widget would and then fire the control's event; a setter fires no event. An
// event holds the name of a published handler of the form (rtl/forms/Forms.h).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rtl/forms/Picture.h"
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

// The part of a control's state that a view has to update.
enum class TChange { Text, Checked, Enabled, Items, ActivePage, Picture };

// Modal results: a button with one closes its form, and ShowModal returns it.
inline constexpr int mrNone = 0;
inline constexpr int mrOk = 1;
inline constexpr int mrCancel = 2;
inline constexpr int mrYes = 6;
inline constexpr int mrNo = 7;

// The place of a control in its parent. By default, a control has a row of its own below the previous one.
struct TPlace {
  bool Beside = false;    // in the row of the previous control
  bool Indented = false;  // aligned with the text of a check box above it
  bool GapAbove = false;
  int Width = 0;   // minimum width, in average characters of the font
  int Height = 0;  // minimum height, in device-independent pixels
};

// One row of a form resource: a control and its design-time properties. Which properties apply depends on
// the kind.
struct TControlRow {
  std::string_view Parent;  // the control that contains it; empty for the form
  TControlKind Kind = TControlKind::Label;
  std::string_view Name;
  std::string_view Text = {};          // caption, or the text of an edit
  bool Checked = false;                // radio button, check box
  bool Bold = false;                   // label
  bool Default = false;                // button: answers the Enter key
  bool Cancel = false;                 // button: answers the Cancel key
  int ModalResult = mrNone;            // button
  std::string_view Action = {};        // button, check box: supplies the caption and whether it is enabled
  std::string_view FocusControl = {};  // label: the control that its accelerator focuses
  std::string_view OnClick = {};       // the event of radio button, check box and button
  std::string_view OnChange = {};      // the event of edit and combo box
  TPicture (*Picture)() = nullptr;     // draws the picture of an image
  TPlace Place = {};
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
  TControl* Parent() const { return FParent; }                          // null if the form itself contains it
  const std::vector<TControl*>& Controls() const { return FControls; }  // contained controls, in tab order

  const std::string& Text() const { return FText; }
  void SetText(std::string_view text);
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool enabled);
  const TPlace& Place() const { return FPlace; }

  // Gives the control the keyboard focus, if the form is shown.
  void SetFocus();
  // Sets the design-time properties in `row`. A derived form calls it again to change an inherited control.
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
  TPlace FPlace;
  std::vector<TControl*> FControls;
  bool FEnabled = true;
};

class TLabel : public TControl {
 public:
  TLabel(TForm& form, TControl* parent, const TControlRow& row);
  bool Bold() const { return FBold; }
  TControl* FocusControl() const;  // null if there is none
  bool Scrolls() const;            // its parent is a scroll box
  void Assign(const TControlRow& row) override;

 private:
  bool FBold = false;
  std::string FFocusControl;
};

// A control that the user clicks.
class TButtonControl : public TControl {
 public:
  using TControl::TControl;
  // User input: a click. Updates a linked action first. Does nothing if the control is disabled.
  void Click();
  TAction* Action() const { return FAction; }  // null if there is none
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
  // Setting it clears all other radio buttons of the same parent.
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
  // User input: sets the text after typing, or after picking it from a list.
  void Enter(std::string_view text);
  void Assign(const TControlRow& row) override;

 protected:
  void FireChange();

 private:
  std::string FOnChange;
};

// An edit with a list of texts to pick from.
class TComboBox : public TEdit {
 public:
  using TEdit::TEdit;
  const TStringList& Items() const { return FItems; }
  void SetItems(TStringList items);
  // User input: picks the entry at `index`, counted from 0. Fires OnChange even if the text stays the same.
  void Pick(int index);

 private:
  TStringList FItems;
};

// A list of entries with a check mark each. Indices count from 0.
class TCheckListBox : public TControl {
 public:
  using TControl::TControl;
  int Count() const { return static_cast<int>(FEntries.size()); }
  const std::string& Entry(int index) const { return FEntries[static_cast<size_t>(index)].Name; }
  bool Checked(int index) const { return FEntries[static_cast<size_t>(index)].Checked; }
  void SetEntries(const std::vector<std::string>& names);  // all unchecked
  void SetChecked(int index, bool checked);                // also called for the user's click on a check mark
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

// A stack of pages of which one is visible. The pages are its tab sheets. Indices count from 0.
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

// A system icon, or a picture of the form.
class TImage : public TControl {
 public:
  TImage(TForm& form, TControl* parent, const TControlRow& row);
  int SystemIcon() const { return FSystemIcon; }  // an icon identifier such as 32514, or 0
  void SetSystemIcon(int identifier);
  // Returns the form's picture; it has no shapes if there is none.
  TPicture Picture() const { return FPicture != nullptr ? FPicture() : TPicture(); }
  void Assign(const TControlRow& row) override;

 private:
  TPicture (*FPicture)() = nullptr;
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
