// The headers of the system's windows and controls, without those of their macros that are names of this
// program. Include it after all other headers.
#pragma once

// The others need the first one.
// clang-format off
#include "win/windows/WindowsApi.h"
#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shobjidl.h>
// clang-format on

// rtl/forms/Application.h defines these names as constants of the same values.
#undef IDI_QUESTION
#undef MB_ICONERROR
#undef MB_ICONINFORMATION
#undef MB_ICONWARNING
#undef MB_OK
