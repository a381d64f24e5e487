#include "win/posix/PosixAccess.h"

#include <cerrno>
#include <string_view>
#include <unistd.h>
#include <vector>
#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace win {
namespace {

constexpr mode_t kPermissions = 0777;
constexpr mode_t kAllBits = 07777;
constexpr mode_t kReadableByAll = 0444;

bool IsRefusedByMedium(int error) {
  return error == EPERM || error == ENOTSUP || error == EINVAL || error == ENOSYS;
}

// Sets owner and group, or the group alone. Returns false if the group could not be set.
bool SetOwner(int fd, const struct stat& wanted, const struct stat& own) {
  if (wanted.st_uid == own.st_uid && wanted.st_gid == own.st_gid) return true;
  return Retry<fchown>(fd, wanted.st_uid, wanted.st_gid) == 0 || wanted.st_gid == own.st_gid ||
         Retry<fchown>(fd, static_cast<uid_t>(-1), wanted.st_gid) == 0;
}

#ifdef __linux__
// Returns the path of the file for the calls that take no open folder; empty if there is none.
std::string PathOf(const THostPath& place) {
  return place.Base == AT_FDCWD ? place.Path : std::string();
}

constexpr const char* kAccessList = "system.posix_acl_access";

bool IsWithoutList(int error) {
  return error == ENODATA || error == ENOTSUP || error == ENOSYS;
}

// Reads the file's access list, empty if it has none. On failure returns false, with errno.
bool ReadAccessList(int fd, std::vector<char>& list) {
  list.resize(256);
  for (;;) {
    const ssize_t size = Retry<fgetxattr>(fd, kAccessList, list.data(), list.size());
    if (size < 0 && errno == ERANGE) {
      list.resize(list.size() * 2);
      continue;
    }
    list.resize(size < 0 ? 0 : static_cast<size_t>(size));
    return size >= 0 || IsWithoutList(errno);
  }
}

// Sets the access list. An empty list removes the one inherited from the folder, which setting permission
// bits would otherwise make effective.
bool SetAccessList(int fd, const std::vector<char>& list) {
  if (!list.empty()) return Retry<fsetxattr>(fd, kAccessList, list.data(), list.size(), 0) == 0;
  return Retry<fremovexattr>(fd, kAccessList) == 0 || IsWithoutList(errno);
}
#else
bool ReadAccessList(int, std::vector<char>& list) {
  list.clear();
  return true;
}

bool SetAccessList(int, const std::vector<char>&) {
  return true;
}
#endif

}  // namespace

void KeepIdentity(const THostPath& target, const struct stat& existing, int fd, const struct stat& own) {
  [[maybe_unused]] const bool isSet = SetOwner(fd, existing, own);
#ifdef __linux__
  const std::string path = PathOf(target);
  if (path.empty()) return;
  char names[4096];
  const ssize_t length = Retry<listxattr>(path.c_str(), names, sizeof names);
  std::vector<char> value;
  for (ssize_t i = 0; i < length; i += static_cast<ssize_t>(std::string_view(names + i).size()) + 1) {
    const ssize_t size = Retry<getxattr>(path.c_str(), names + i, nullptr, size_t{0});
    if (size < 0) continue;
    value.resize(static_cast<size_t>(size) + 1);
    const ssize_t got = Retry<getxattr>(path.c_str(), names + i, value.data(), value.size());
    if (got >= 0) {
      [[maybe_unused]] const int set =
          Retry<fsetxattr>(fd, names + i, value.data(), static_cast<size_t>(got), 0);
    }
  }
#else
  static_cast<void>(target);
#endif
}

bool CopyAccess(int from, const struct stat& source, int to, const struct stat& own) {
  std::vector<char> list;
  const bool isKnown = ReadAccessList(from, list);
  const bool isOpenToAll = isKnown && list.empty() && (source.st_mode & kReadableByAll) == kReadableByAll;
  const bool hasGroup = SetOwner(to, source, own);
  if (isKnown && (hasGroup || isOpenToAll) && SetAccessList(to, list)) return SetPermissions(to, source);
  [[maybe_unused]] const bool isRemoved =
      SetAccessList(to, {});  // without effect as long as the mode is 0600
  return true;
}

bool SetPermissions(int fd, const struct stat& source) {
  return Retry<fchmod>(fd, source.st_mode & kPermissions) == 0 || IsRefusedByMedium(errno);
}

bool SetPermissions(const THostPath& place, const struct stat& own, const struct stat& source) {
  const mode_t mode = source.st_mode & kPermissions;
  return (own.st_mode & kAllBits) == mode || Retry<fchmodat>(place.Base, place.Path.c_str(), mode, 0) == 0;
}

bool HasLabels([[maybe_unused]] const THostPath& place) {
#ifdef __linux__
  const std::string path = PathOf(place);
  const ssize_t length = path.empty() ? 1 : Retry<listxattr>(path.c_str(), nullptr, size_t{0});
  return length > 0 || (length < 0 && !IsWithoutList(errno));
#else
  return true;
#endif
}

bool SetWriteTime(int fd, const struct stat& source) {
#ifdef __APPLE__
  const timespec modified = source.st_mtimespec;
#else
  const timespec modified = source.st_mtim;
#endif
  const timespec times[2] = {{0, UTIME_OMIT}, modified};
  return Retry<futimens>(fd, times) == 0 || IsRefusedByMedium(errno);
}

}  // namespace win
