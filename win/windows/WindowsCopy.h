// Copying and renaming. A new file always replaces the old one in one step.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "win/FileSystem.h"
#include "win/Overwriting.h"
#include "win/windows/WindowsAccess.h"
#include "win/windows/WindowsPath.h"
#include "win/windows/WindowsWritten.h"

namespace win {

// All operations return false, with the last error set, on failure; the target is unchanged then.
class TWindowsCopier {
 public:
  // `written` must outlive the object.
  explicit TWindowsCopier(TWrittenFiles& written) : FWritten(written) {}

  // `expected`: unless null, fails if the target is another file or was changed.
  bool Copy(std::string_view source, std::string_view target, TOverwriting rule, bool failIfExists,
            const TFileStamp* expected = nullptr);
  // TFileSystem::ReplaceFileContents.
  bool ReplaceContents(std::string_view path, std::string_view bytes);
  // TFileSystem::MoveFileReplacing.
  bool Move(std::string_view source, std::string_view target);

 private:
  struct TTarget {
    std::wstring Path;  // full, the name spelled as on disk
    TEntryInfo Info;    // if the target exists
    bool Exists = false;
    bool IsRefused = false;  // the existing entry must not be replaced
  };
  bool FindTarget(std::string_view path, TOverwriting rule, TTarget& target);
  bool CopyContents(HANDLE from, HANDLE to);
  // The attributes and times that the new file gets.
  struct TNewFile {
    std::wstring AccessOf;    // full path of the file whose access list it gets; empty for the folder's
    uint32_t Attributes = 0;  // the system's
    const FILETIME* Modified = nullptr;  // null for the present
  };
  using TFill = std::function<bool(HANDLE file)>;
  bool Replace(const TTarget& target, TOverwriting rule, bool onlyIfFree, const TNewFile& made,
               const TFill& fill, const TFileStamp* expected);
  void SweepOnce(std::wstring_view folder);

  TWrittenFiles& FWritten;
  std::vector<char> FBuffer;
  std::unordered_set<std::wstring> FSwept;  // folders in which SweepTemporaryFiles was called
};

}  // namespace win
