// The version of a file when a run read it. Detects later changes of the file, and backups that differ.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "win/FileSystem.h"

namespace rtl {
class TFileStream;
}

namespace mig {

struct TFileVersion {
  win::TFileStamp Stamp;         // taken before the first byte was read
  std::optional<uint64_t> Hash;  // of the bytes, if the file was written so recently that a later write might
                                 // have left the same stamp
};

// Returns the version of a file open for reading. `bytes` are its contents. Raises rtl::EReadError.
TFileVersion VersionOf(rtl::TFileStream& file, std::string_view bytes);

// Returns True if the file is unchanged since it was read. On failure returns False with the reason in
// win::GetLastError, which is ERROR_FILE_INVALID if the file can be read and differs.
bool IsUnchanged(const std::string& fileName, const TFileVersion& version);

// Returns True if a file had the same contents each time it was read. `earlier` was read before `later`.
bool IsSameVersion(const std::string& fileName, const TFileVersion& earlier, const TFileVersion& later);

// Returns True if `backupName` holds the bytes that were read from `fileName`: by size and time or, where
// these do not decide, by the bytes. Otherwise False, as IsUnchanged.
bool IsTrueBackup(const std::string& fileName, const std::string& backupName, const TFileVersion& version);

}  // namespace mig
