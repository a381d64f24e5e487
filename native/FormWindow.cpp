#include "native/FormWindow.h"

#include <algorithm>

#include "native/DialogTemplate.h"
#include "native/FormLayout.h"
#include "native/ModalLoop.h"
#include "native/WindowText.h"
#include "rtl/forms/Application.h"

namespace native {

namespace {

constexpr int kFirstIdentifier = 100;  // above those that the dialog's rules give a meaning

// Runs a function as one event of the user. Exceptions go to the application's handler.
template <class TEvent>
void RunEvent(const TEvent& event) {
  try {
    event();
  } catch (const std::exception& exception) {
    rtl::Application().HandleException(exception);
  }
}

bool IsOnVisiblePage(const rtl::TControl& control) {
  for (const rtl::TControl* page = &control; page != nullptr; page = page->Parent()) {
    const rtl::TControl* const stack = page->Parent();
    if (page->Kind() == rtl::TControlKind::TabSheet && stack != nullptr &&
        &static_cast<const rtl::TPageControl*>(stack)->ActivePage() != page)
      return false;
  }
  return true;
}

}  // namespace

TFormWindow::TFormWindow(rtl::TForm& form, HWND owner) : FForm(form), FOwner(owner) {
  FDialog = CreateEmptyDialog(owner, DialogProc, this);
  AddControls(form.Controls());
  for (const auto& [control, window] : FWindows) window->ShowAll();
  ShowPages();
  SetDpi(DpiOf(FDialog));
  CaptionChanged();
  form.SetView(this);
}

TFormWindow::~TFormWindow() {
  FForm.SetView(nullptr);
  DestroyWindow(FDialog);
}

void TFormWindow::AddControls(std::vector<rtl::TControl*> controls) {
  // Radio buttons with other controls between them become neighbours in tab order: as the system has it, only
  // the selected one is reached by Tab, and the others from it by arrow keys, within a group.
  const auto isRadio = [](const rtl::TControl* control) {
    return control->Kind() == rtl::TControlKind::RadioButton;
  };
  std::stable_partition(std::find_if(controls.begin(), controls.end(), isRadio), controls.end(), isRadio);
  for (rtl::TControl* control : controls) {
    const int identifier = kFirstIdentifier + static_cast<int>(FOrder.size());
    FOrder.push_back(control);
    FWindows.emplace(control, CreateControlWindow(*control, FDialog, identifier));
    AddControls(control->Controls());
  }
}

void TFormWindow::Run() {
  if (FForm.ModalResult() != rtl::mrNone) return;
  Place();
  ShowWindow(FDialog, SW_SHOW);
  RunModal(
      FDialog, FOwner, [this] { return FForm.ModalResult() != rtl::mrNone; }, [this] { BeIdle(); });
  SavePlace();
}

// --- Size and position ---

void TFormWindow::SetDpi(int dpi) {
  auto metrics = std::make_unique<TMetrics>(dpi);
  for (const auto& [control, window] : FWindows) window->SetMetrics(*metrics);
  FMetrics = std::move(metrics);  // now that no control uses the old fonts
}

// Returns the size of the window.
SIZE TFormWindow::LayOut() {
  const TFormLayout::TWindowOf windowOf = [this](const rtl::TControl& control) -> TControlWindow& {
    return WindowOf(control);
  };
  const SIZE client = TFormLayout(FForm, *FMetrics, windowOf).Arrange();
  return DialogSize(client, *FMetrics);
}

void TFormWindow::Place() {
  const SIZE size = LayOut();
  RECT place = {0, 0, size.cx, size.cy};
  OffsetRect(&place, MulDiv(FForm.Left(), SystemDpi(), kStandardDpi),
             MulDiv(FForm.Top(), SystemDpi(), kStandardDpi));
  if (FForm.Centered() || MonitorFromRect(&place, MONITOR_DEFAULTTONULL) == nullptr)
    return CenterDialog(FDialog, FOwner, size);
  MoveWindow(FDialog, static_cast<int>(place.left), static_cast<int>(place.top), size.cx, size.cy, FALSE);
}

void TFormWindow::SavePlace() {
  RECT place{};
  GetWindowRect(FDialog, &place);
  FForm.SetLeft(MulDiv(static_cast<int>(place.left), kStandardDpi, SystemDpi()));
  FForm.SetTop(MulDiv(static_cast<int>(place.top), kStandardDpi, SystemDpi()));
}

// --- Messages ---

INT_PTR CALLBACK TFormWindow::DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    return FALSE;  // the focus is set later
  }
  auto* const self = reinterpret_cast<TFormWindow*>(GetWindowLongPtrW(dialog, DWLP_USER));
  return self != nullptr && self->Handle(message, wParam, lParam) ? TRUE : FALSE;
}

bool TFormWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      RunEvent([&] { Command(LOWORD(wParam), HIWORD(wParam)); });
      return true;
    case WM_NOTIFY: {
      const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
      const size_t index = header.idFrom - kFirstIdentifier;
      if (index < FOrder.size()) RunEvent([&] { WindowOf(*FOrder[index]).Notify(header); });
      return false;
    }
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      const size_t index = item.CtlID - kFirstIdentifier;
      if (index < FOrder.size()) WindowOf(*FOrder[index]).Draw(item.hDC);
      return true;
    }
    case WM_CLOSE:
      FForm.Close();
      return true;
    case WM_HELP:
      if (OnHelp) RunEvent(OnHelp);
      return true;
    case WM_DPICHANGED: {
      SetDpi(HIWORD(wParam));
      const SIZE size = LayOut();
      const auto& place = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(FDialog, nullptr, static_cast<int>(place.left), static_cast<int>(place.top), size.cx,
                   size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
      return true;
    }
    default:
      return false;
  }
}

void TFormWindow::Command(int identifier, int code) {
  if (identifier == IDCANCEL) {
    if (rtl::TButton* const button = FForm.CancelButton()) {
      button->Click();
    } else {
      FForm.Close();
    }
    return;
  }
  const size_t index = static_cast<size_t>(identifier - kFirstIdentifier);
  if (identifier >= kFirstIdentifier && index < FOrder.size()) WindowOf(*FOrder[index]).Command(code);
}

void TFormWindow::BeIdle() {
  RunEvent([this] { FForm.UpdateActions(); });
  if (const rtl::TButton* const button = FForm.DefaultButton()) {
    const auto identifier = static_cast<WPARAM>(GetDlgCtrlID(WindowOf(*button).Window()));
    const LRESULT present = SendMessageW(FDialog, DM_GETDEFID, 0, 0);
    if (LOWORD(present) != identifier) SendMessageW(FDialog, DM_SETDEFID, identifier, 0);
  }
  // A control that was disabled with the focus has left the dialog without one.
  const HWND focus = GetFocus();
  const bool isLost = GetActiveWindow() == FDialog && (focus == nullptr || IsWindowEnabled(focus) == FALSE);
  if (const rtl::TControl* const first = FForm.FirstControl(); first != nullptr && (FPageTurned || isLost))
    SetFocusTo(*first);
  FPageTurned = false;
}

// Also draws the border of the default button where it belongs.
void TFormWindow::SetFocusTo(const rtl::TControl& control) {
  SendMessageW(FDialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(WindowOf(control).Window()), TRUE);
}

// --- Changes of the form ---

void TFormWindow::ShowPages() {
  for (const rtl::TControl* control : FOrder) {
    const HWND window = WindowOf(*control).Window();
    if (window != nullptr) ShowWindow(window, IsOnVisiblePage(*control) ? SW_SHOWNA : SW_HIDE);
  }
}

void TFormWindow::ControlChanged(const rtl::TControl& control, rtl::TChange what) {
  WindowOf(control).Show(what);
  if (what != rtl::TChange::ActivePage) return;
  ShowPages();
  FPageTurned = true;
}

void TFormWindow::FocusChanged(const rtl::TControl& control) {
  SetFocusTo(control);
}

void TFormWindow::CaptionChanged() {
  ShowText(FDialog, FForm.Caption());
}

void TFormWindow::ModalResultChanged() {
  PostMessageW(FDialog, WM_NULL, 0, 0);  // wakes the loop, which looks at the result
}

}  // namespace native
