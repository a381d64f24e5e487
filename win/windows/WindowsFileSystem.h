// The file functions on the system's own files. win/FileSystem.h documents the contracts.
#pragma once

#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "win/FileSystem.h"
#include "win/windows/WindowsAccess.h"
#include "win/windows/WindowsPath.h"
#include "win/windows/WindowsWritten.h"

namespace win {

// For one thread. Its open files and walks must not outlive it.
class TWindowsFileSystem : public TFileSystem {
 public:
  std::unique_ptr<TFileHandle> CreateFileA(std::string_view path, TFileMode mode) override;
  bool CopyFileA(std::string_view source, std::string_view target, bool failIfExists) override;
  bool CopyOverUnchanged(std::string_view source, std::string_view target,
                         const TFileStamp& expected) override;
  bool ReplaceFileContents(std::string_view path, std::string_view bytes) override;
  bool CopyToOwnFile(std::string_view source, std::string_view target) override;
  bool MoveFileReplacing(std::string_view source, std::string_view target) override;
  std::unique_ptr<TFindHandle> FindFirstFileA(std::string_view pattern, TFindData& data) override;
  uint32_t GetFileAttributesA(std::string_view path) override;
  std::optional<TFileStamp> GetFileStamp(std::string_view path) override;
  std::unique_ptr<TFileLock> LockFolder(std::string_view path) override;
  bool CreateDirectoryA(std::string_view path) override;
  bool CreatePrivateDirectory(std::string_view path) override;
  bool RemoveDirectoryA(std::string_view path) override;
  bool DeleteFileA(std::string_view path) override;
  bool CopyPermissions(std::string_view source, std::string_view target) override;
  std::string GetTempPathA() override;
  std::string GetLongPathNameA(std::string_view path) override;
  void HoldFolders(bool hold) override;
  bool FlushWritten() override;
  bool FlushFolder(std::string_view path) override;

 private:
  // Opens a file for reading, and describes it. Returns a handle that is not open, with the last error set,
  // on failure.
  THandle OpenForReading(const std::wstring& full, TFileFacts& facts);
  THandle OpenForWriting(std::wstring& full, TFileMode mode);

  // The kinds of entries that may be replaced.
  enum class TOverwriting {
    Document,  // a writable file, or a link, which is followed
    Own,       // any file, no link
    Name       // a writable file, or a link, which is itself replaced
  };
  struct TTarget {
    std::wstring Path;  // full, the name spelled as on disk
    TEntryInfo Info;    // if the target exists
    bool Exists = false;
    bool IsRefused = false;  // the existing entry must not be replaced
  };
  bool FindTarget(std::string_view path, TOverwriting rule, TTarget& target);
  bool Copy(std::string_view source, std::string_view target, TOverwriting rule, bool failIfExists,
            const TFileStamp* expected = nullptr);
  bool CopyContents(HANDLE from, HANDLE to);
  // What the new file gets besides its contents.
  struct TNewFile {
    std::wstring AccessOf;    // full path of the file whose access list it gets; empty for the folder's
    uint32_t Attributes = 0;  // the system's
    const FILETIME* Modified = nullptr;  // null for the present
  };
  using TFill = std::function<bool(HANDLE file)>;
  bool Replace(const TTarget& target, TOverwriting rule, bool onlyIfFree, const TNewFile& made,
               const TFill& fill, const TFileStamp* expected);
  void SweepOnce(std::wstring_view folder);
  bool MakeDirectory(std::string_view path, SECURITY_ATTRIBUTES* access);

  TWrittenFiles& FWritten = TWrittenFiles::OfProcess();
  std::vector<char> FBuffer;                     // for copying
  std::unordered_set<std::wstring> FSwept;       // folders in which SweepTemporaryFiles was called
  std::unordered_set<std::wstring> FPassedOver;  // names that were reported already
};

}  // namespace win
