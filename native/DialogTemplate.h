// A dialog of the system without controls. They are added, and the dialog is placed, after it was created.
#pragma once

#include "native/Dpi.h"

namespace native {

inline constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
inline constexpr DWORD kExtendedDialogStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

// `self` is the parameter of WM_INITDIALOG.
HWND CreateEmptyDialog(HWND owner, DLGPROC procedure, void* self);

// Returns the size of such a dialog whose client area is `client`.
SIZE DialogSize(SIZE client, const TMetrics& metrics);

// Sets the size, and centres the dialog on the monitor of `owner`, or on the first one if that is null.
void CenterDialog(HWND dialog, HWND owner, SIZE size);

// Sets the size. The position stays.
void ResizeDialog(HWND dialog, SIZE size);

}  // namespace native
