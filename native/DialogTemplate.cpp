#include "native/DialogTemplate.h"

namespace native {

HWND CreateEmptyDialog(HWND owner, DLGPROC procedure, void* self) {
  struct TTemplate {
    DLGTEMPLATE Header = {kDialogStyle, kExtendedDialogStyle, 0, 0, 0, 0, 0};
    WORD Menu = 0;
    WORD Class = 0;
    WORD Title = 0;
  };
  static const TTemplate kTemplate;
  return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &kTemplate.Header, owner, procedure,
                                    reinterpret_cast<LPARAM>(self));
}

SIZE DialogSize(SIZE client, const TMetrics& metrics) {
  return WindowSize(client, kDialogStyle, kExtendedDialogStyle, metrics.Dpi());
}

void CenterDialog(HWND dialog, HWND owner, SIZE size) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
  const RECT& work = monitor.rcWork;
  const LONG left = work.left + (work.right - work.left - size.cx) / 2;
  const LONG top = work.top + (work.bottom - work.top - size.cy) / 2;
  SetWindowPos(dialog, nullptr, static_cast<int>(left), static_cast<int>(top), size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void ResizeDialog(HWND dialog, SIZE size) {
  SetWindowPos(dialog, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace native
