// Opening, reading and writing a file.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "win/FileSystem.h"
#include "win/windows/WindowsAccess.h"
#include "win/windows/WindowsPath.h"
#include "win/windows/WindowsWritten.h"

namespace win {

// TFileSystem::CreateFileA. `written` must outlive the result.
std::unique_ptr<TFileHandle> OpenFile(TWrittenFiles& written, std::string_view path, TFileMode mode);

// Opens the file at a full path for reading, and describes it. Returns a handle that is not open, with the
// last error set, on failure.
THandle OpenForReading(const std::wstring& full, TFileFacts& facts);

// TFileSystem::GetFileStamp.
std::optional<TFileStamp> StampOfFile(std::string_view path);

}  // namespace win
