// The file functions on the host's own files. win/FileSystem.h documents the contracts.
//
// An operation first tries the path as given, in one system call where possible. Only if there is no such
// entry, it looks for it without regard to case (win/posix/PosixFolders.h).
#pragma once

#include <functional>
#include <string>
#include <sys/stat.h>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "win/FileSystem.h"
#include "win/posix/PosixFolders.h"
#include "win/posix/PosixPath.h"
#include "win/posix/PosixWritten.h"

namespace win {

// For one thread. Its open files and walks must not outlive it.
class TPosixFileSystem : public TFileSystem {
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

  // Returns how often a folder was read to look a name up, for measurements.
  size_t FolderReadings() const { return FFolders.Readings(); }

 private:
  // Whether a path may end in a separator.
  enum class TKind { File, Folder };

  // Finds the host path for a Windows path, spelled as given. On failure returns false, with the last error
  // set.
  bool Locate(std::string_view path, TKind kind, THostPath& place);
  bool Shorten(THostPath& place);

  // The behaviour of AtPlace if neither the exact name exists nor a recent listing has one that differs in
  // case.
  enum class TAbsence {
    Verified,  // looks for one that was created since
    Trusted,   // accepts the listing: the caller creates the name, and another can appear after any check
    Assumed    // the same, without a call: the caller opens the name whether it exists or not
  };

  // Calls `operation`, which returns a negative number and sets errno on failure, with `place` as given (or
  // as a recent listing spells it) and, if there is no such entry, as it is spelled on disk. Returns the
  // result of the last call. After ENOENT the folder of `place` exists and is spelled as on disk, and the
  // name in it is free. If the folder is missing, errno is ENOTDIR.
  template <class TOperation>
  int AtPlace(THostPath& place, const TOperation& operation, TAbsence absence = TAbsence::Verified);
  // Describes the entry at `place`; for a link, the link itself.
  int StatAt(THostPath& place, struct stat& info, TAbsence absence = TAbsence::Verified);

  bool MakeDirectory(std::string_view path, mode_t mode);
  TUniqueFd OpenForReading(std::string_view path, struct stat& info);
  // The kinds of entries that may be replaced.
  enum class TOverwriting {
    Document,  // a writable file, or a link, which is followed
    Own,       // any file, no link
    Name       // a writable file, or a link, which is itself replaced
  };
  struct TTarget {
    THostPath Place;
    struct stat Info {};  // if the target exists
    bool Exists = false;
    bool IsRefused = false;  // the existing entry must not be replaced
  };
  bool FindTarget(std::string_view path, TOverwriting rule, TTarget& target);
  bool Copy(std::string_view source, std::string_view target, TOverwriting rule, bool failIfExists,
            const TFileStamp* expected = nullptr);
  using TFill = std::function<bool(int fd, const struct stat& own)>;
  static bool CanTakePlaceOf(const THostPath& source, const struct stat& info, const TTarget& target);
  bool Replace(const TTarget& target, mode_t mode, bool onlyIfFree, const TFill& fill,
               const TFileStamp* expected = nullptr);
  void SweepOnce(const THostPath& target);
  TUniqueFd OpenForWriting(std::string_view path, THostPath& place, struct stat& info);
  TUniqueFd OpenOwn(std::string_view path, THostPath& place, struct stat& info);
  TUniqueFd OpenFolder(std::string_view path);
  bool CopyContents(int from, int to, int64_t size);
  bool FoldsCase(const THostPath& place, dev_t device);
  bool PassesOver(const THostPath& folder, std::string_view name);

  TFolderCache FFolders;
  TWrittenFiles& FWritten = TWrittenFiles::OfProcess();
  std::vector<char> FBuffer;  // for copying
  std::unordered_map<dev_t, bool> FFoldsCase;
  std::unordered_set<std::string> FSwept;       // folders in which SweepTemporaryFiles was called
  std::unordered_set<std::string> FPassedOver;  // names that were reported already
};

template <class TOperation>
int TPosixFileSystem::AtPlace(THostPath& place, const TOperation& operation, TAbsence absence) {
  const int base = place.Base;
  const std::string given = place.Path;
  const TFolderCache::TRecent recent = FFolders.LookUpRecent(place);
  if (recent == TFolderCache::TRecent::Absent && absence == TAbsence::Assumed) {
    errno = ENOENT;
    return -1;
  }
  const int first = operation(place);
  if (first >= 0 || errno != ENOENT) return first;
  if (recent == TFolderCache::TRecent::Absent && absence != TAbsence::Verified) return first;
  // The listing is wrong, or the name is a link that leads nowhere.
  if (recent == TFolderCache::TRecent::Present) FFolders.Forget(place);
  for (int attempt = 1;; ++attempt) {
    place.Base = base;
    place.Path = given;
    place.FullPath.clear();
    switch (FFolders.Respell(place)) {
      case TFolderCache::TOutcome::Found:
        break;
      case TFolderCache::TOutcome::NoEntry:
        errno = ENOENT;
        return -1;
      case TFolderCache::TOutcome::NoFolder:
        errno = ENOTDIR;
        return -1;
      case TFolderCache::TOutcome::Failed:
        return -1;
    }
    const int result = operation(place);
    if (result >= 0 || errno != ENOENT) return result;
    // As above. Try once more after reading the folder again.
    if (attempt == 2) return result;
    FFolders.Forget(place);
  }
}

}  // namespace win
