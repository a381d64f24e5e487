// Copying and renaming. A new file always replaces the old one in one step.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unordered_set>
#include <vector>

#include "win/FileSystem.h"
#include "win/Overwriting.h"
#include "win/posix/PosixPlaces.h"
#include "win/posix/PosixWritten.h"

namespace win {

// All operations return false, with the last error set, on failure; the target is unchanged then.
class TPosixCopier {
 public:
  // Both arguments must outlive the object.
  TPosixCopier(TPosixPlaces& places, TWrittenFiles& written) : FPlaces(places), FWritten(written) {}

  // `expected`: unless null, fails if the target is another file or was changed.
  bool Copy(std::string_view source, std::string_view target, TOverwriting rule, bool failIfExists,
            const TFileStamp* expected = nullptr);
  // TFileSystem::CopyOverUnchanged.
  bool CopyOverUnchanged(std::string_view source, std::string_view target, const TFileStamp& expected);
  // TFileSystem::ReplaceFileContents.
  bool ReplaceContents(std::string_view path, std::string_view bytes);
  // TFileSystem::MoveFileReplacing.
  bool Move(std::string_view source, std::string_view target);

 private:
  struct TTarget {
    THostPath Place;
    struct stat Info {};  // if the target exists
    bool Exists = false;
    bool IsRefused = false;  // the existing entry must not be replaced
  };
  bool FindTarget(std::string_view path, TOverwriting rule, TTarget& target);
  using TFill = std::function<bool(int fd, const struct stat& own)>;
  static bool CanTakePlaceOf(const THostPath& source, const struct stat& info, const TTarget& target);
  bool Replace(const TTarget& target, mode_t mode, bool onlyIfFree, const TFill& fill,
               const TFileStamp* expected = nullptr);
  void SweepOnce(const THostPath& target);
  bool CopyContents(int from, int to, int64_t size);

  TPosixPlaces& FPlaces;
  TWrittenFiles& FWritten;
  std::vector<char> FBuffer;
  std::unordered_set<std::string> FSwept;  // folders in which SweepTemporaryFiles was called
};

}  // namespace win
