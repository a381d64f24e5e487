// The system's dialogs that choose a folder or a file.
//
// They are the ones of Windows 6 and later, or else those that came before.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "native/WindowsHeaders.h"
#include "rtl/forms/Application.h"

namespace native {

// Return the full Windows path that the user chose, or nullopt if the user cancelled. `owner` is disabled
// meanwhile.
//
// `start` is the folder to start from; empty for the one of the last time.
std::optional<std::string> PickFolder(HWND owner, std::string_view caption, std::string_view start);
std::optional<std::string> PickFile(HWND owner, const rtl::TOpenDialog& open);

}  // namespace native
