// Access to files: attributes, times, access lists.
#pragma once

#include <optional>
#include <string>

#include "win/FileSystem.h"
#include "win/windows/WindowsErrors.h"

namespace win {

// The attributes that belong to a file's contents and are copied with them.
constexpr uint32_t kCopiedAttributes = 0x01 /* read-only */ | 0x02 /* hidden */ | 0x04 /* system */ |
                                       0x20 /* archive */ | 0x2000 /* not indexed */;

// Opening a file in a way that keeps nobody else from reading, writing, renaming or deleting it.
inline constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The parts of a file's security that a copy takes over from its source.
struct TFileFacts {
  TFileStamp Stamp;
  uint32_t Attributes = 0;  // the system's
  FILETIME Modified{};      // last-write time
};

// Describes an open file. On failure returns false, with the last error set.
[[nodiscard]] bool ReadFacts(HANDLE file, TFileFacts& facts);

// Sets the attributes and, if `modified` is not null, the last-write time of the file at a full path. Does
// nothing if they are right already. Returns false, with the last error set, on failure.
[[nodiscard]] bool SetAttributesAndTime(const std::wstring& full, uint32_t attributes,
                                        const FILETIME* modified);

// A security descriptor that allows access to the user who runs the program alone.
class TPrivateAccess {
 public:
  TPrivateAccess();
  ~TPrivateAccess();
  TPrivateAccess(const TPrivateAccess&) = delete;
  TPrivateAccess& operator=(const TPrivateAccess&) = delete;

  // Returns null if the descriptor could not be made. Folders pass the access on to what is created in them.
  SECURITY_ATTRIBUTES* Get() { return FAttributes.lpSecurityDescriptor ? &FAttributes : nullptr; }

 private:
  SECURITY_ATTRIBUTES FAttributes{};
};

// Gives the file at the full path `to` the access list of the file at `from`. Returns false if it could not
// be read or set, and `to` keeps its own. Volumes without access lists succeed.
bool CopyAccessList(const std::wstring& from, const std::wstring& to);

}  // namespace win
