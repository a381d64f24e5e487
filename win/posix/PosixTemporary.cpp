#include "win/posix/PosixTemporary.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <utility>
#include <vector>

#include "win/posix/PosixDirectory.h"
#include "win/posix/PosixFile.h"
#include "win/posix/PosixLock.h"

namespace win {
namespace {

constexpr std::string_view kExtension = ".$$$";
// Ends the name of a file that is exchanged for its target. Before the extension, the name then has the marks
// of the file and of the target.
constexpr char kExchanged = '~';
constexpr size_t kMarkLength = 17;

// Returns the prefix of the names given by processes on this computer. Temporary files of other computers
// are left alone, because on a network volume a lock may be visible only to the computer that holds it.
const std::string& NamePrefix() {
  static const std::string prefix = [] {
    char host[256] = {};
    gethostname(host, sizeof host - 1);
    uint32_t hash = 2166136261;  // FNV-1a
    for (const char* c = host; *c; ++c) hash = (hash ^ static_cast<uint8_t>(*c)) * 16777619;
    char name[24];
    std::snprintf(name, sizeof name, "~kva%08x-", hash);
    return std::string(name);
  }();
  return prefix;
}

// Returns a name that no other temporary file of this process has. `folder` ends in a separator.
std::string NewName(std::string_view folder) {
  static std::atomic<unsigned> counter = 0;
  char number[40];
  std::snprintf(number, sizeof number, "%lx-%x", static_cast<unsigned long>(getpid()), counter.fetch_add(1));
  return std::string(folder).append(NamePrefix()).append(number).append(kExtension);
}

// Returns a text that differs for different states of files.
std::string MarkOf(const TFileStamp& stamp) {
  uint64_t hash = 14695981039346656037u;  // FNV-1a
  for (const uint64_t part :
       {stamp.Identity, static_cast<uint64_t>(stamp.Size), static_cast<uint64_t>(stamp.Modified)}) {
    for (unsigned shift = 0; shift < 64; shift += 8) hash = (hash ^ (part >> shift & 0xFF)) * 1099511628211u;
  }
  char mark[kMarkLength + 1];
  std::snprintf(mark, sizeof mark, "-%016llx", static_cast<unsigned long long>(hash));
  return mark;
}

std::string NewExchangedName(std::string_view folder, const TFileStamp& own, const TFileStamp& target) {
  std::string name = NewName(folder);
  name.insert(name.size() - kExtension.size(), MarkOf(own) + MarkOf(target));
  return name + kExchanged;
}

// Returns whether the process that gave the name runs.
bool HasOwner(std::string_view name) {
  const long id = std::strtol(std::string(name.substr(NamePrefix().size())).c_str(), nullptr, 16);
  return id <= 0 || kill(static_cast<pid_t>(id), 0) == 0 || errno != ESRCH;
}

// Returns whether the file of an exchanged name is in the state of one of its marks, so that its contents are
// not the only ones: either its target was not exchanged yet, or it is the target that was to be replaced.
bool IsMarked(std::string_view name, const struct stat& info) {
  name.remove_suffix(kExtension.size() + 1);
  const std::string mark = MarkOf(FileStampOf(info));
  return name.size() > 2 * kMarkLength &&
         (name.ends_with(mark) || name.substr(0, name.size() - kMarkLength).ends_with(mark));
}

bool IsTemporaryName(std::string_view name) {
  const std::string& prefix = NamePrefix();
  if (name.ends_with(kExchanged)) name.remove_suffix(1);
  if (!name.starts_with(prefix) || !name.ends_with(kExtension)) return false;
  name = name.substr(prefix.size(), name.size() - prefix.size() - kExtension.size());
  return name.find_first_not_of("0123456789abcdef-") == std::string_view::npos;
}

// Deletes the file unless its owner holds its lock.
void SweepFile(int folder, const char* name) {
  const TUniqueFd fd(Retry<openat>(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat info {
  }, named{};
  if (!fd.IsOpen() || Retry<fstat>(fd.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return;
  if (std::string_view(name).ends_with(kExchanged) && (HasOwner(name) || !IsMarked(name, info))) return;
  if (TryLock(fd.Get()) != TLocking::Locked) return;
  // The owner may have renamed it to the target before the lock was taken.
  if (Retry<fstatat>(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 && IsSameFile(named, info)) {
    Retry<unlinkat>(folder, name, 0);
  }
}

}  // namespace

TTemporaryFile::~TTemporaryFile() {
  if (!FPath.empty()) Retry<unlinkat>(FTarget.Base, FPath.c_str(), 0);
  // A duplicate of the descriptor may still be waiting to be flushed.
  if (FFd.IsOpen()) Unlock(FFd.Get());
}

bool TTemporaryFile::Create(mode_t mode, struct stat& info) {
  for (;;) {
    std::string path = NewName(FTarget.Folder());
    TUniqueFd fd(Retry<openat>(FTarget.Base, path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!fd.IsOpen()) {
      if (errno == EEXIST || errno == EINTR) continue;
      return false;
    }
    FPath = std::move(path);
    FFd = std::move(fd);
    const TLocking locking = TryLock(FFd.Get());
    if (locking == TLocking::Failed || Retry<fstat>(FFd.Get(), &info) != 0) return false;
    if (locking != TLocking::HeldByOther && info.st_nlink > 0) return true;
    // Another process found the file before this one had locked it, and deletes it.
    FPath.clear();
  }
}

bool TTemporaryFile::Adopt([[maybe_unused]] const THostPath& source, [[maybe_unused]] const TFileStamp& own,
                           [[maybe_unused]] const TFileStamp& expected) {
#ifdef RENAME_EXCHANGE
  for (;;) {
    const std::string path = NewExchangedName(FTarget.Folder(), own, expected);
    if (Retry<renameat2>(source.Base, source.Path.c_str(), FTarget.Base, path.c_str(),
                         unsigned{RENAME_NOREPLACE}) == 0) {
      FPath = path;
      return true;
    }
    if (errno != EEXIST) return false;
  }
#else
  errno = ENOTSUP;
  return false;
#endif
}

bool TTemporaryFile::Finish() {
  TUniqueFd duplicate(Retry<fcntl>(FFd.Get(), F_DUPFD_CLOEXEC, 0));
  return duplicate.IsOpen() && duplicate.Close();
}

bool TTemporaryFile::RenameToTarget(bool onlyIfFree) {
  const char* const name = FTarget.Path.c_str();
  if (onlyIfFree) {
    // Create a second name, which cannot replace another file. The destructor deletes the first one.
    if (Retry<linkat>(FTarget.Base, FPath.c_str(), FTarget.Base, name, 0) == 0) return true;
    if (errno != EPERM && errno != ENOTSUP) return false;
  }
  if (Retry<renameat>(FTarget.Base, FPath.c_str(), FTarget.Base, name) != 0) return false;
  FPath.clear();
  return true;
}

bool TTemporaryFile::RenameToUnchanged(const TFileStamp& expected) {
  const char* const name = FTarget.Path.c_str();
  const auto check = [&](const char* path) {
    struct stat info {};
    if (Retry<fstatat>(FTarget.Base, path, &info, AT_SYMLINK_NOFOLLOW) != 0) return errno;
    return FileStampOf(info) == expected ? 0 : ESTALE;
  };
#ifdef RENAME_EXCHANGE
  // After the exchange the temporary name holds the file of the last writer, so it must be a name that is
  // swept only with the file that is expected: if the process is killed at this point, an edit stays.
  if (!FPath.ends_with(kExchanged)) {
    struct stat own {};
    if (Retry<fstat>(FFd.Get(), &own) != 0) return false;
    std::string kept = NewExchangedName(FTarget.Folder(), FileStampOf(own), expected);
    if (Retry<renameat>(FTarget.Base, FPath.c_str(), FTarget.Base, kept.c_str()) != 0) return false;
    FPath = std::move(kept);
  }
  // Not every file system supports exchanging. The check after the exchange applies to exactly the file
  // that was replaced, so no other writer can interfere.
  const auto exchange = [&] {
    return Retry<renameat2>(FTarget.Base, FPath.c_str(), FTarget.Base, name, unsigned{RENAME_EXCHANGE}) == 0;
  };
  if (exchange()) {
    const int failure = check(FPath.c_str());
    // If it cannot be restored, the other writer's file stays under the temporary name. If the expected file
    // cannot be deleted, the destructor tries again.
    const bool isDone = failure == 0 ? Retry<unlinkat>(FTarget.Base, FPath.c_str(), 0) == 0 : !exchange();
    if (isDone) FPath.clear();
    errno = failure;
    return failure == 0;
  }
#endif
  if (const int failure = check(name); failure != 0) {
    errno = failure;
    return false;
  }
  return RenameToTarget(false);
}

void SweepTemporaryFiles(const THostPath& target) {
  TPosixDirectory folder(TUniqueFd(Retry<openat>(target.Base, target.FolderPath().c_str(), kOpenFolder)));
  std::vector<std::string> names;
  while (const dirent* const entry = folder.Next()) {
    if (IsTemporaryName(entry->d_name)) names.emplace_back(entry->d_name);
  }
  for (const std::string& name : names) SweepFile(folder.Fd(), name.c_str());
}

}  // namespace win
