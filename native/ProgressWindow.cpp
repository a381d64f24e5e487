#include "native/ProgressWindow.h"

#include "native/DialogTemplate.h"
#include "native/ModalLoop.h"
#include "native/WindowText.h"
#include "rtl/forms/FormRows.h"
#include "win/windows/WindowsText.h"

namespace native {

namespace {

constexpr int kStopIdentifier = 100;
constexpr int kWidth = 72;      // average characters
constexpr int kBarHeight = 15;  // device-independent pixels
constexpr int kButtonWidth = 75;
constexpr int kButtonPadding = 8;

}  // namespace

TProgressWindow::~TProgressWindow() {
  if (FWindow != nullptr) TProgressWindow::CloseWindow();
}

HWND TProgressWindow::AddControl(const wchar_t* windowClass, const wchar_t* text, DWORD style,
                                 int identifier) {
  return CreateWindowExW(0, windowClass, text, style | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, FWindow,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)), GetModuleHandleW(nullptr),
                         nullptr);
}

void TProgressWindow::OpenWindow(const std::string& title, bool canStop) {
  FOwner = FOwnerOf();
  FWindow = CreateEmptyDialog(FOwner, DialogProc, this);
  ShowText(FWindow, title);
  // The run cannot be cancelled by closing the window, so the system menu does not offer it.
  EnableMenuItem(GetSystemMenu(FWindow, FALSE), SC_CLOSE, MF_BYCOMMAND | MF_GRAYED);
  FPhase = AddControl(WC_STATICW, L"", SS_LEFT | SS_NOPREFIX, 0);
  FFileName = AddControl(WC_STATICW, L"", SS_LEFT | SS_NOPREFIX | SS_PATHELLIPSIS, 0);
  FBar = AddControl(PROGRESS_CLASSW, L"", 0, 0);
  FCount = AddControl(WC_STATICW, L"", SS_LEFT | SS_NOPREFIX, 0);
  FStop = AddControl(WC_BUTTONW, L"&Stop", BS_PUSHBUTTON | WS_TABSTOP, kStopIdentifier);
  if (!canStop) ShowWindow(FStop, SW_HIDE);
  SetDpi(DpiOf(FWindow));
  RECT size{};
  GetWindowRect(FWindow, &size);
  CenterDialog(FWindow, FOwner, {size.right - size.left, size.bottom - size.top});
  if (FOwner != nullptr) EnableWindow(FOwner, FALSE);
  ShowWindow(FWindow, SW_SHOW);
}

// Sets the fonts and places the controls.
void TProgressWindow::SetDpi(int dpi) {
  auto metrics = std::make_unique<TMetrics>(dpi);
  const int margin = metrics->Scale(rtl::kFormMargin);
  const int spacing = metrics->Scale(rtl::kRowSpacing);
  const int line = metrics->LineHeight();
  const int width = metrics->CharWidth() * kWidth;
  const int buttonWidth = metrics->Scale(kButtonWidth);
  const int buttonHeight = line + metrics->Scale(kButtonPadding);
  const auto place = [&](HWND control, int left, int top, int right, int bottom) {
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(metrics->Font()), TRUE);
    MoveWindow(control, left, top, right - left, bottom - top, TRUE);
  };
  const int right = margin + width;
  int top = margin;
  place(FPhase, margin, top, right, top + line);
  top += line + spacing;
  place(FFileName, margin, top, right, top + line);
  top += line + spacing;
  place(FBar, margin, top, right, top + metrics->Scale(kBarHeight));
  top += metrics->Scale(kBarHeight) + spacing;
  place(FStop, right - buttonWidth, top, right, top + buttonHeight);
  place(FCount, margin, top, right - buttonWidth - spacing, top + line);
  ResizeDialog(FWindow, DialogSize({right + margin, top + buttonHeight + margin}, *metrics));
  FMetrics = std::move(metrics);  // now that no control uses the old fonts
}

INT_PTR CALLBACK TProgressWindow::DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    return TRUE;
  }
  auto* const self = reinterpret_cast<TProgressWindow*>(GetWindowLongPtrW(dialog, DWLP_USER));
  return self != nullptr && self->Handle(message, wParam, lParam) ? TRUE : FALSE;
}

bool TProgressWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DPICHANGED) {
    // Anywhere else the window could lie on the other monitor again.
    const auto& place = *reinterpret_cast<const RECT*>(lParam);
    SetWindowPos(FWindow, nullptr, static_cast<int>(place.left), static_cast<int>(place.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetDpi(HIWORD(wParam));
    return true;
  }
  if (message == WM_QUERYENDSESSION) {
    // Stops the run, and refuses until it has ended, because the system would end the process in the middle of
    // it. The system shows the reason, and the user can insist.
    ShutdownBlockReasonCreate(FWindow, L"The run is being stopped. Wait until it has ended.");
    StopRun();
    SetWindowLongPtrW(FWindow, DWLP_MSGRESULT, FALSE);
    return true;
  }
  // Only the button stops the run: the Enter and Escape keys that led here must not.
  if (message != WM_COMMAND || LOWORD(wParam) != kStopIdentifier || HIWORD(wParam) != BN_CLICKED)
    return message == WM_COMMAND || message == WM_CLOSE;
  StopRun();
  return true;
}

void TProgressWindow::StopRun() {
  Stop();
  EnableWindow(FStop, FALSE);
}

void TProgressWindow::ShowState(const mig::TRunProgress& progress, bool canStop) {
  SendMessageW(FBar, PBM_SETRANGE32, 0, progress.PhaseTotal);
  SendMessageW(FBar, PBM_SETPOS, static_cast<WPARAM>(progress.PhaseDone), 0);
  ShowText(FPhase, mig::NameOf(progress.Phase));
  ShowText(FFileName, progress.FileName);
  const bool isCounted = progress.PhaseTotal > 0;
  ShowText(FCount, isCounted
                       ? std::to_string(progress.PhaseDone) + " of " + std::to_string(progress.PhaseTotal)
                       : std::string());
  if (!canStop) EnableWindow(FStop, FALSE);
  HandlePending(FWindow);
}

void TProgressWindow::CloseWindow() {
  if (FOwner != nullptr) EnableWindow(FOwner, TRUE);
  DestroyWindow(FWindow);
  FWindow = nullptr;
}

}  // namespace native
