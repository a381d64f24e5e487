#include "native/ControlWindows.h"

#include <algorithm>
#include <string>

#include "native/PictureImage.h"
#include "native/WindowText.h"
#include "rtl/forms/FormRows.h"
#include "rtl/forms/Forms.h"
#include "win/windows/WindowsText.h"

namespace native {

namespace {

using rtl::TControlKind;

// Lengths in device-independent pixels, as the guidelines for dialogs have them.
constexpr int kLinePadding = 8;   // the height of a line of input, without the text
constexpr int kButtonWidth = 75;  // the minimum
constexpr int kButtonPadding = 24;
constexpr int kCheckWidth = 20;  // a check mark and the space after it
constexpr int kCheckPadding = 2;
constexpr int kLineWidth = 2;
constexpr int kScrollPadding = 8;

struct TKindRow {
  TControlKind Kind;
  const wchar_t* Class;  // null for a kind without a window
  DWORD Style;
  DWORD ExtendedStyle = 0;
};

constexpr DWORD kListStyle = LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS | WS_TABSTOP;

constexpr TKindRow kKinds[] = {
    {TControlKind::Label, WC_STATICW, SS_LEFT},
    {TControlKind::RadioButton, WC_BUTTONW, BS_AUTORADIOBUTTON | BS_MULTILINE},
    {TControlKind::CheckBox, WC_BUTTONW, BS_AUTOCHECKBOX | BS_MULTILINE | WS_TABSTOP},
    {TControlKind::Edit, WC_EDITW, ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE},
    {TControlKind::ComboBox, WC_COMBOBOXW, CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_VSCROLL | WS_TABSTOP},
    {TControlKind::CheckListBox, WC_LISTVIEWW, kListStyle, WS_EX_CLIENTEDGE},
    {TControlKind::Button, WC_BUTTONW, BS_PUSHBUTTON | WS_TABSTOP},
    {TControlKind::PageControl, nullptr, 0},
    {TControlKind::TabSheet, nullptr, 0},
    {TControlKind::Image, WC_STATICW, SS_OWNERDRAW},
    {TControlKind::ScrollBox, nullptr, 0},
    {TControlKind::Bevel, WC_STATICW, SS_ETCHEDHORZ},
};

// The row of a label in a scroll box.
constexpr TKindRow kScrollingLabel = {TControlKind::Label, WC_EDITW,
                                      ES_MULTILINE | ES_READONLY | WS_VSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE};

bool IsScrolling(const rtl::TControl& control) {
  return control.Kind() == TControlKind::Label && static_cast<const rtl::TLabel&>(control).Scrolls();
}

const TKindRow& KindOf(const rtl::TControl& control) {
  if (IsScrolling(control)) return kScrollingLabel;
  return *std::find_if(std::begin(kKinds), std::end(kKinds),
                       [&](const TKindRow& row) { return row.Kind == control.Kind(); });
}

// Returns the style that makes the arrow keys move between the radio buttons of a page, and between buttons
// that follow each other: the first one of them starts a group, and so does every other control.
DWORD GroupStyle(const rtl::TControl& control) {
  const auto& siblings =
      control.Parent() != nullptr ? control.Parent()->Controls() : control.Form().Controls();
  const auto self = std::find(siblings.begin(), siblings.end(), &control);
  const auto isSame = [&](const rtl::TControl* sibling) { return sibling->Kind() == control.Kind(); };
  if (control.Kind() == TControlKind::RadioButton)
    return std::any_of(siblings.begin(), self, isSame) ? 0 : WS_GROUP;
  const bool follows =
      control.Kind() == TControlKind::Button && self != siblings.begin() && isSame(*std::prev(self));
  return follows ? 0 : WS_GROUP;
}

// Returns the style that shows an ampersand as one, in labels without an accelerator.
DWORD PrefixStyle(const rtl::TControl& control) {
  if (control.Kind() != TControlKind::Label || IsScrolling(control)) return 0;
  return static_cast<const rtl::TLabel&>(control).FocusControl() == nullptr ? SS_NOPREFIX : 0;
}

class TLabelWindow : public TControlWindow {
 public:
  TLabelWindow(const rtl::TLabel& label, HWND dialog, int identifier)
      : TControlWindow(label, dialog, identifier), FLabel(label) {}
  void SetMetrics(const TMetrics& metrics) override {
    SendMessageW(Window(), WM_SETFONT, reinterpret_cast<WPARAM>(metrics.Font(FLabel.Bold())), TRUE);
  }
  SIZE Measure(const TMetrics& metrics, int width) const override {
    return metrics.SizeOf(win::ToWideOrReplaced(FLabel.Text()).c_str(), FLabel.Bold(), width,
                          FLabel.FocusControl() != nullptr);
  }

 protected:
  void ShowText() override { native::ShowText(Window(), FLabel.Text()); }

 private:
  const rtl::TLabel& FLabel;
};

class TScrollingLabelWindow : public TControlWindow {
 public:
  TScrollingLabelWindow(const rtl::TLabel& label, HWND dialog, int identifier)
      : TControlWindow(label, dialog, identifier), FLabel(label) {
    SetWindowSubclass(Window(), LikeALabel, 0, 0);
  }
  SIZE Measure(const TMetrics& metrics, int width) const override {
    return {width, metrics.LineHeight() * rtl::kVisibleEntries + metrics.Scale(kScrollPadding)};
  }

 protected:
  void ShowText() override {
    std::string text;
    for (const char c : FLabel.Text()) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
    native::ShowText(Window(), text);
  }

 private:
  // Leaves the Enter, Escape and Tab keys to the dialog, and does not select the text with the focus.
  static LRESULT CALLBACK LikeALabel(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                     DWORD_PTR) {
    if (message == WM_GETDLGCODE) return DLGC_WANTARROWS;
    return DefSubclassProc(window, message, wParam, lParam);
  }

  const rtl::TLabel& FLabel;
};

// The window of a radio button or a check box.
template <class TControl>
class TMarkWindow : public TControlWindow {
 public:
  TMarkWindow(TControl& control, HWND dialog, int identifier)
      : TControlWindow(control, dialog, identifier), FMark(control) {}
  SIZE Measure(const TMetrics& metrics, int width) const override {
    const int mark = metrics.Scale(kCheckWidth);
    const SIZE text =
        metrics.SizeOf(win::ToWideOrReplaced(FMark.Text()).c_str(), false, std::max(0, width - mark), true);
    return {text.cx + mark, text.cy + metrics.Scale(kCheckPadding)};
  }
  void Command(int code) override {
    if (code != BN_CLICKED) return;
    FMark.Click();
    ShowChecked();
  }

 protected:
  void ShowText() override { native::ShowText(Window(), FMark.Text()); }
  void ShowChecked() override {
    SendMessageW(Window(), BM_SETCHECK, FMark.Checked() ? BST_CHECKED : BST_UNCHECKED, 0);
  }

 private:
  TControl& FMark;
};

class TButtonWindow : public TControlWindow {
 public:
  TButtonWindow(rtl::TButton& button, HWND dialog, int identifier)
      : TControlWindow(button, dialog, identifier), FButton(button) {}
  SIZE Measure(const TMetrics& metrics, int) const override {
    const SIZE text = metrics.SizeOf(win::ToWideOrReplaced(FButton.Text()).c_str(), false, 0, true);
    return {std::max<LONG>(metrics.Scale(kButtonWidth), text.cx + metrics.Scale(kButtonPadding)),
            metrics.LineHeight() + metrics.Scale(kLinePadding)};
  }
  void Command(int code) override {
    if (code == BN_CLICKED) FButton.Click();
  }

 protected:
  void ShowText() override { native::ShowText(Window(), FButton.Text()); }

 private:
  rtl::TButton& FButton;
};

class TEditWindow : public TControlWindow {
 public:
  TEditWindow(rtl::TEdit& edit, HWND dialog, int identifier)
      : TControlWindow(edit, dialog, identifier), FEdit(edit) {}
  SIZE Measure(const TMetrics& metrics, int width) const override {
    return {width, metrics.LineHeight() + metrics.Scale(kLinePadding)};
  }
  void Command(int code) override {
    if (code == EN_CHANGE) Enter();
  }

 protected:
  void ShowText() override { native::ShowText(Window(), FEdit.Text()); }
  void Enter() {
    if (!IsShowing()) FEdit.Enter(win::ToUtf8OrReplaced(TextOf(Window())));
  }

 private:
  rtl::TEdit& FEdit;
};

class TComboWindow : public TEditWindow {
 public:
  TComboWindow(rtl::TComboBox& combo, HWND dialog, int identifier)
      : TEditWindow(combo, dialog, identifier), FCombo(combo) {}
  void Command(int code) override {
    if (code == CBN_EDITCHANGE) Enter();
    if (code == CBN_SELCHANGE && !IsShowing()) {
      const auto index = SendMessageW(Window(), CB_GETCURSEL, 0, 0);
      if (index != CB_ERR) FCombo.Pick(static_cast<int>(index));
    }
  }
  // The system derives the height of the line from the font. The height that is set adds that of the list.
  void Place(const RECT& place) override {
    RECT line{};
    GetWindowRect(Window(), &line);
    const LONG top = place.top + (place.bottom - place.top - (line.bottom - line.top)) / 2;
    const int list = static_cast<int>(SendMessageW(Window(), CB_GETITEMHEIGHT, 0, 0)) * kListEntries;
    TEditWindow::Place({place.left, top, place.right, place.bottom + list});
  }

 protected:
  void ShowItems() override {
    SendMessageW(Window(), CB_RESETCONTENT, 0, 0);
    for (int i = 0; i < FCombo.Items().Count(); ++i)
      SendMessageW(Window(), CB_ADDSTRING, 0,
                   reinterpret_cast<LPARAM>(win::ToWideOrReplaced(FCombo.Items()[i]).c_str()));
    ShowText();
  }

 private:
  static constexpr int kListEntries = 10;
  rtl::TComboBox& FCombo;
};

// A list of which each entry has a check mark.
class TCheckListWindow : public TControlWindow {
 public:
  TCheckListWindow(rtl::TCheckListBox& list, HWND dialog, int identifier)
      : TControlWindow(list, dialog, identifier), FList(list) {
    LVCOLUMNW column{};
    SendMessageW(Window(), LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  }
  void SetMetrics(const TMetrics& metrics) override {
    TControlWindow::SetMetrics(metrics);
    // The system draws the check marks when the style is set, for the resolution of that moment. It clears
    // all of them, which is no input of the user.
    FSetsStyle = true;
    ListView_SetExtendedListViewStyle(Window(), 0);
    ListView_SetExtendedListViewStyle(Window(), LVS_EX_CHECKBOXES | LVS_EX_DOUBLEBUFFER);
    FSetsStyle = false;
    Show(rtl::TChange::Checked);
  }
  SIZE Measure(const TMetrics& metrics, int width) const override {
    return {width, (metrics.LineHeight() + metrics.Scale(kCheckPadding)) * rtl::kVisibleEntries +
                       metrics.Scale(kScrollPadding)};
  }
  void Place(const RECT& place) override {
    TControlWindow::Place(place);
    ListView_SetColumnWidth(Window(), 0, LVSCW_AUTOSIZE_USEHEADER);
  }
  void Notify(const NMHDR& header) override {
    if (header.code != LVN_ITEMCHANGED || IsShowing() || FSetsStyle) return;
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    if (((change.uOldState ^ change.uNewState) & LVIS_STATEIMAGEMASK) == 0 || change.iItem < 0) return;
    FList.SetChecked(change.iItem, ListView_GetCheckState(Window(), change.iItem) != 0);
  }

 protected:
  void ShowItems() override {
    ListView_DeleteAllItems(Window());
    for (int i = 0; i < FList.Count(); ++i) {
      std::wstring text = win::ToWideOrReplaced(FList.Entry(i));
      LVITEMW item{};
      item.mask = LVIF_TEXT;
      item.iItem = i;
      item.pszText = text.data();
      SendMessageW(Window(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    ShowChecked();
    ListView_SetItemState(Window(), 0, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
    ListView_SetColumnWidth(Window(), 0, LVSCW_AUTOSIZE_USEHEADER);
  }
  void ShowChecked() override {
    for (int i = 0; i < FList.Count(); ++i) {
      const BOOL checked = FList.Checked(i) ? TRUE : FALSE;
      ListView_SetCheckState(Window(), i, checked);
    }
  }

 private:
  rtl::TCheckListBox& FList;
  bool FSetsStyle = false;
};

class TImageWindow : public TControlWindow {
 public:
  TImageWindow(const rtl::TImage& image, HWND dialog, int identifier)
      : TControlWindow(image, dialog, identifier), FImage(image) {}
  void SetMetrics(const TMetrics& metrics) override {
    FDpi = metrics.Dpi();
    FPicture = TPictureImage(FImage, FDpi);
  }
  SIZE Measure(const TMetrics&, int) const override { return FPicture.Size(); }
  void Draw(HDC context) const override { FPicture.Draw(context); }

 protected:
  void ShowPicture() override {
    FPicture = TPictureImage(FImage, FDpi);
    InvalidateRect(Window(), nullptr, TRUE);
  }

 private:
  const rtl::TImage& FImage;
  int FDpi = kStandardDpi;
  TPictureImage FPicture;
};

class TLineWindow : public TControlWindow {
 public:
  TLineWindow(const rtl::TControl& control, HWND dialog, int identifier)
      : TControlWindow(control, dialog, identifier) {}
  SIZE Measure(const TMetrics&, int width) const override { return {width, kLineWidth}; }
};

// A control that only contains others.
class TNoWindow : public TControlWindow {
 public:
  TNoWindow(const rtl::TControl& control, HWND dialog, int identifier)
      : TControlWindow(control, dialog, identifier) {}
  SIZE Measure(const TMetrics&, int) const override { return {}; }
};

template <class TWindow, class TControl>
std::unique_ptr<TControlWindow> Create(rtl::TControl& control, HWND dialog, int identifier) {
  return std::make_unique<TWindow>(static_cast<TControl&>(control), dialog, identifier);
}

}  // namespace

std::unique_ptr<TControlWindow> CreateControlWindow(rtl::TControl& control, HWND dialog, int identifier) {
  switch (control.Kind()) {
    case TControlKind::Label:
      return IsScrolling(control) ? Create<TScrollingLabelWindow, rtl::TLabel>(control, dialog, identifier)
                                  : Create<TLabelWindow, rtl::TLabel>(control, dialog, identifier);
    case TControlKind::RadioButton:
      return Create<TMarkWindow<rtl::TRadioButton>, rtl::TRadioButton>(control, dialog, identifier);
    case TControlKind::CheckBox:
      return Create<TMarkWindow<rtl::TCheckBox>, rtl::TCheckBox>(control, dialog, identifier);
    case TControlKind::Button:
      return Create<TButtonWindow, rtl::TButton>(control, dialog, identifier);
    case TControlKind::Edit:
      return Create<TEditWindow, rtl::TEdit>(control, dialog, identifier);
    case TControlKind::ComboBox:
      return Create<TComboWindow, rtl::TComboBox>(control, dialog, identifier);
    case TControlKind::CheckListBox:
      return Create<TCheckListWindow, rtl::TCheckListBox>(control, dialog, identifier);
    case TControlKind::Image:
      return Create<TImageWindow, rtl::TImage>(control, dialog, identifier);
    case TControlKind::Bevel:
      return Create<TLineWindow, rtl::TControl>(control, dialog, identifier);
    case TControlKind::PageControl:
    case TControlKind::TabSheet:
    case TControlKind::ScrollBox:
      break;
  }
  return Create<TNoWindow, rtl::TControl>(control, dialog, identifier);
}

TControlWindow::TControlWindow(const rtl::TControl& control, HWND dialog, int identifier)
    : FControl(control), FWindow(nullptr) {
  const TKindRow& kind = KindOf(control);
  if (kind.Class == nullptr) return;
  const DWORD style = WS_CHILD | kind.Style | GroupStyle(control) | PrefixStyle(control);
  FWindow = CreateWindowExW(kind.ExtendedStyle, kind.Class, L"", style, 0, 0, 0, 0, dialog,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)),
                            GetModuleHandleW(nullptr), nullptr);
}

void TControlWindow::SetMetrics(const TMetrics& metrics) {
  SendMessageW(FWindow, WM_SETFONT, reinterpret_cast<WPARAM>(metrics.Font()), TRUE);
}

void TControlWindow::Place(const RECT& place) {
  MoveWindow(FWindow, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
}

}  // namespace native
