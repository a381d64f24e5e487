#include "win/posix/PosixFind.h"

#include <cerrno>

#include "win/Errors.h"
#include "win/FolderEntries.h"
#include "win/paths/Drives.h"
#include "win/posix/PosixDirectory.h"
#include "win/posix/PosixErrors.h"

namespace win {
namespace {

// Returns the attributes of an entry, INVALID_FILE_ATTRIBUTES, with errno, on failure.
uint32_t AttributesOf(int folder, const dirent& entry) {
  const auto stat = [&](struct stat& info, int flags) {
    return Retry<fstatat>(folder, entry.d_name, &info, flags) == 0;
  };
  struct stat info {};
  if (entry.d_type == DT_REG) return FILE_ATTRIBUTE_NORMAL;
  if (entry.d_type == DT_DIR) return FILE_ATTRIBUTE_DIRECTORY;
  if (entry.d_type == DT_UNKNOWN) {
    if (!stat(info, AT_SYMLINK_NOFOLLOW)) {
      return errno == ENOENT ? FILE_ATTRIBUTE_NORMAL : INVALID_FILE_ATTRIBUTES;
    }
    if (S_ISDIR(info.st_mode)) return FILE_ATTRIBUTE_DIRECTORY;
    if (!S_ISLNK(info.st_mode)) return FILE_ATTRIBUTE_NORMAL;
  } else if (entry.d_type != DT_LNK) {
    return FILE_ATTRIBUTE_NORMAL;
  }
  const bool toFolder = stat(info, 0) && S_ISDIR(info.st_mode);
  return toFolder ? FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT : FILE_ATTRIBUTE_NORMAL;
}

}  // namespace

std::unique_ptr<TFindHandle> FindFirst(TPosixPlaces& places, std::unordered_set<std::string>& reported,
                                       std::string_view pattern, TFindData& data) {
  const size_t end = pattern.find_last_of("\\/:") + 1;  // npos + 1 is 0
  if (pattern.substr(end) != "*.*") {
    Fail(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  THostPath place;
  if (!places.Locate(end == 0 ? "." : pattern.substr(0, end), TPathKind::Folder, place)) return nullptr;
  TUniqueFd fd(places.AtPlace(
      place, [](const THostPath& at) { return Retry<openat>(at.Base, at.Path.c_str(), kOpenFolder); }));
  const int failure = errno;
  if (!fd.IsOpen()) {
    struct stat info {};
    const bool isFile = failure == ENOTDIR && Retry<fstatat>(place.Base, place.Path.c_str(), &info, 0) == 0;
    static_cast<void>(isFile              ? Fail(ERROR_DIRECTORY)
                      : failure == ENOENT ? Fail(ERROR_PATH_NOT_FOUND)
                                          : FailErrno(failure));
    return nullptr;
  }
  TPosixDirectory directory(std::move(fd));
  TFolderEntries entries;
  int error = 0;
  while (const dirent* const entry = directory.Next()) {
    const uint32_t attributes = AttributesOf(directory.Fd(), *entry);
    if (!IsWindowsName(entry->d_name)) {
      const std::string path = place.Path + (place.Path.back() == '/' ? "" : "/") + entry->d_name;
      entries.AddUnnamed(entry->d_name, attributes == FILE_ATTRIBUTE_DIRECTORY, path);
      continue;
    }
    if (attributes == INVALID_FILE_ATTRIBUTES && error == 0) error = errno;
    entries.Add(entry->d_name, attributes);
  }
  if (error == 0) error = directory.Error();
  if (error != 0) {
    FailErrno(error);
    return nullptr;
  }
  return std::move(entries).Walk(reported, data);
}

}  // namespace win
