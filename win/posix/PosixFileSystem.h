// The file functions on the host's own files. The contracts are those of win/FileSystem.h.
//
// An operation first tries the path as it is written, in one system call where that can be; only where there
// is no such entry is it looked for without regard to case (win/PosixFolders.h).
#pragma once

#include <functional>
#include <string>
#include <sys/stat.h>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "win/FileSystem.h"
#include "win/posix/PosixFolders.h"
#include "win/posix/PosixPlace.h"
#include "win/posix/PosixWritten.h"

namespace win {

// For one thread. Open files and walks must not outlive it.
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

  // How often a folder was read to look a name up, for measurements.
  size_t FolderReadings() const { return FFolders.Readings(); }

 private:
  // Whether a path may end in a separator.
  enum class TKind { File, Folder };

  // The place that a Windows path is written as. False, with the last error set, where that is none.
  bool Locate(std::string_view path, TKind kind, TPlace& place);
  bool Shorten(TPlace& place);

  // What AtPlace does where the exact name is not there, and a moment ago there was none that differs in case
  // alone either: ask whether one came since, or not, because the name is about to be made, and one could
  // come behind any question too.
  enum class TAbsence { Asked, Believed };

  // Calls `operation`, which gives a negative number and errno where it fails, with `place` as it is written
  // (or as it was spelled a moment ago) and, if there is no such entry, as it is spelled on disk. The result
  // is that of the last call. On ENOENT behind it, the folder of `place` is there and spelled as on disk, and
  // the name in it is free; where the folder is missing, errno is ENOTDIR.
  template <class TOperation>
  int AtPlace(TPlace& place, const TOperation& operation, TAbsence absence = TAbsence::Asked);
  // Of a link itself.
  int StatAt(TPlace& place, struct stat& info, TAbsence absence = TAbsence::Asked);

  bool MakeDirectory(std::string_view path, mode_t mode);
  TUniqueFd OpenForReading(std::string_view path, struct stat& info);
  // What may have the name that a file is to take.
  enum class TOverwriting {
    Document,  // a writable file, or a link, which is followed
    Own,       // any file, no link
    Name       // a writable file, or a link, which is itself replaced
  };
  struct TTarget {
    TPlace Place;
    struct stat Info {};  // if something is there
    bool Exists = false;
    bool IsRefused = false;  // what is there may not be replaced
  };
  bool FindTarget(std::string_view path, TOverwriting rule, TTarget& target);
  bool Copy(std::string_view source, std::string_view target, TOverwriting rule, bool failIfExists,
            const TFileStamp* expected = nullptr);
  using TFill = std::function<bool(int fd, const struct stat& own)>;
  bool Replace(const TTarget& target, mode_t mode, bool onlyIfFree, const TFill& fill,
               const TFileStamp* expected = nullptr);
  void SweepOnce(const TPlace& target);
  TUniqueFd OpenForWriting(std::string_view path, TPlace& place, struct stat& info);
  TUniqueFd OpenOwn(std::string_view path, TPlace& place, struct stat& info);
  TUniqueFd OpenFolder(std::string_view path);
  bool CopyContents(int from, int to, int64_t size);
  bool FoldsCase(const TPlace& place, dev_t device);
  bool PassesOver(const TPlace& folder, std::string_view name);

  TFolderCache FFolders;
  TWrittenFiles& FWritten = TWrittenFiles::OfProcess();
  std::vector<char> FBuffer;  // for copying
  std::unordered_map<dev_t, bool> FFoldsCase;
  std::unordered_set<std::string> FSwept;       // folders in which SweepTemporaryFiles was called
  std::unordered_set<std::string> FPassedOver;  // names that were reported already
};

template <class TOperation>
int TPosixFileSystem::AtPlace(TPlace& place, const TOperation& operation, TAbsence absence) {
  const int base = place.Base;
  const std::string given = place.Path;
  const TFolderCache::TRecall recalled = FFolders.Recall(place);
  const int first = operation(place);
  if (first >= 0 || errno != ENOENT) return first;
  if (recalled == TFolderCache::TRecall::Absent && absence == TAbsence::Believed) return first;
  // The listing names what is not there, or a link that leads nowhere.
  if (recalled == TFolderCache::TRecall::Present) FFolders.Forget(place);
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
    // As above. Once more with the folder read anew.
    if (attempt == 2) return result;
    FFolders.Forget(place);
  }
}

}  // namespace win
