// Opening, reading and writing a file.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <sys/stat.h>

#include "win/FileSystem.h"
#include "win/posix/PosixPlaces.h"
#include "win/posix/PosixWritten.h"

namespace win {

TFileStamp FileStampOf(const struct stat& info);

// TFileSystem::CreateFileA. `places` and `written` must outlive the result.
std::unique_ptr<TFileHandle> OpenFile(TPosixPlaces& places, TWrittenFiles& written, std::string_view path,
                                      TFileMode mode);

// Opens a regular file and describes it. On failure the result is not open and the last error is set.
TUniqueFd OpenForReading(TPosixPlaces& places, std::string_view path, struct stat& info);

// TFileSystem::GetFileStamp.
std::optional<TFileStamp> StampOfFile(TPosixPlaces& places, std::string_view path);

}  // namespace win
