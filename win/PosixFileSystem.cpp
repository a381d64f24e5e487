#include "win/PosixFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "win/CodePage.h"
#include "win/Drives.h"
#include "win/Errors.h"

namespace win {
namespace {

bool Fail(int error) {
  switch (error) {
    case ENOENT:
      SetLastError(ERROR_FILE_NOT_FOUND);
      break;
    case ENOTDIR:
      SetLastError(ERROR_PATH_NOT_FOUND);
      break;
    case EEXIST:
      SetLastError(ERROR_ALREADY_EXISTS);
      break;
    case ENOTEMPTY:
      SetLastError(ERROR_DIR_NOT_EMPTY);
      break;
    case ENOSPC:
      SetLastError(ERROR_DISK_FULL);
      break;
    case EACCES:
    case EPERM:
    case EISDIR:
      SetLastError(ERROR_ACCESS_DENIED);
      break;
    default:
      SetLastError(ERROR_GEN_FAILURE);
      break;
  }
  return false;
}

bool FindEntry(const std::string& folder, std::string_view name, std::string& found) {
  DIR* const dir = opendir(folder.c_str());
  if (!dir) return false;
  const std::string upper = UpperFileName(name);
  found.clear();
  while (const dirent* entry = readdir(dir)) {
    if (UpperFileName(entry->d_name) == upper && (found.empty() || FileNameLess(entry->d_name, found))) {
      found = entry->d_name;
    }
  }
  closedir(dir);
  return !found.empty();
}

std::string Locate(std::string_view path) {
  const std::string host = ToHostName(path);
  struct stat info {};
  if (host.empty() || lstat(host.c_str(), &info) == 0) return host;
  std::string result = host[0] == '/' ? "/" : "";
  for (size_t start = host[0] == '/' ? 1 : 0; start < host.size();) {
    const size_t end = std::min(host.find('/', start), host.size());
    std::string name = host.substr(start, end - start);
    std::string found;
    if (lstat((result + name).c_str(), &info) != 0 && FindEntry(result.empty() ? "." : result, name, found)) {
      name = found;
    }
    result += name;
    if (end < host.size()) result += '/';
    start = end + 1;
  }
  return result;
}

class TPosixFileHandle : public TFileHandle {
 public:
  explicit TPosixFileHandle(int fd) : FFd(fd) {}
  ~TPosixFileHandle() override { close(FFd); }
  int64_t Read(void* buffer, size_t count) override {
    const ssize_t got = read(FFd, buffer, count);
    if (got < 0) Fail(errno);
    return got;
  }
  bool Write(const void* buffer, size_t count) override {
    const char* from = static_cast<const char*>(buffer);
    while (count > 0) {
      const ssize_t done = write(FFd, from, count);
      if (done < 0 && errno == EINTR) continue;
      if (done < 0) return Fail(errno);
      from += done;
      count -= static_cast<size_t>(done);
    }
    return true;
  }
  bool Seek(int64_t position) override { return lseek(FFd, position, SEEK_SET) >= 0 || Fail(errno); }
  int64_t Size() override {
    struct stat info {};
    return fstat(FFd, &info) == 0 ? info.st_size : -1;
  }

 private:
  int FFd;
};

class TPosixFindHandle : public TFindHandle {
 public:
  explicit TPosixFindHandle(std::vector<TFindData> entries) : FEntries(std::move(entries)) {}
  bool Next(TFindData& data) override {
    if (FNext == FEntries.size()) {
      SetLastError(ERROR_NO_MORE_FILES);
      return false;
    }
    data = FEntries[FNext++];
    return true;
  }

 private:
  std::vector<TFindData> FEntries;
  size_t FNext = 0;
};

}  // namespace

std::unique_ptr<TFileHandle> TPosixFileSystem::CreateFileA(std::string_view path, TFileMode mode) {
  const std::string host = Locate(path);
  const int flags = mode == TFileMode::OpenRead ? O_RDONLY : O_RDWR | O_CREAT;
  const int fd = open(host.c_str(), flags | O_NONBLOCK | O_CLOEXEC, 0666);
  if (fd < 0) {
    Fail(errno);
    return nullptr;
  }
  auto handle = std::make_unique<TPosixFileHandle>(fd);
  struct stat info {};
  fstat(fd, &info);
  if (!S_ISREG(info.st_mode) || (mode == TFileMode::Create && !(info.st_mode & S_IWUSR))) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  if (mode == TFileMode::Create && ftruncate(fd, 0) != 0) {
    Fail(errno);
    return nullptr;
  }
  return handle;
}

bool TPosixFileSystem::CopyFileA(std::string_view source, std::string_view target, bool failIfExists) {
  const std::string from = Locate(source);
  const std::string to = Locate(target);
  struct stat info {
  }, existing{};
  if (stat(from.c_str(), &info) != 0) return Fail(errno);
  if (stat(to.c_str(), &existing) == 0) {
    if (failIfExists) return Fail(EEXIST);
    if (!S_ISREG(existing.st_mode) || !(existing.st_mode & S_IWUSR)) return Fail(EACCES);
  }
  const auto input = CreateFileA(source, TFileMode::OpenRead);
  if (!input) return false;
  const std::string temporary =
      to.substr(0, to.find_last_of('/') + 1) + "$kva" + std::to_string(getpid()) + ".$$$";
  const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (fd < 0) return Fail(errno);
  TPosixFileHandle output(fd);
  std::vector<char> buffer(1 << 16);
  int64_t got = 0;
  bool done = true;
  while (done && (got = input->Read(buffer.data(), buffer.size())) > 0) {
    done = output.Write(buffer.data(), static_cast<size_t>(got));
  }
  done = done && got == 0;
  const timespec times[2] = {info.st_atim, info.st_mtim};
  if (done)
    done = (fchmod(fd, info.st_mode & 07777) == 0 && futimens(fd, times) == 0 &&
            rename(temporary.c_str(), to.c_str()) == 0) ||
           Fail(errno);
  if (!done) unlink(temporary.c_str());
  return done;
}

std::unique_ptr<TFindHandle> TPosixFileSystem::FindFirstFileA(std::string_view pattern, TFindData& data) {
  const size_t end = pattern.find_last_of("\\/") + 1;
  const std::string folder = end == 0 ? "." : Locate(pattern.substr(0, end));
  DIR* const dir = opendir(folder.c_str());
  if (!dir) {
    Fail(errno);
    return nullptr;
  }
  std::vector<TFindData> entries;
  while (const dirent* entry = readdir(dir)) {
    struct stat info {};
    const bool folderEntry = fstatat(dirfd(dir), entry->d_name, &info, 0) == 0 && S_ISDIR(info.st_mode);
    entries.push_back({entry->d_name, folderEntry ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL});
  }
  closedir(dir);
  std::sort(entries.begin(), entries.end(), [](const TFindData& left, const TFindData& right) {
    const auto rank = [](const std::string& name) { return name == "." ? 0 : name == ".." ? 1 : 2; };
    if (rank(left.FileName) != rank(right.FileName)) return rank(left.FileName) < rank(right.FileName);
    return FileNameLess(left.FileName, right.FileName);
  });
  auto handle = std::make_unique<TPosixFindHandle>(std::move(entries));
  if (!handle->Next(data)) return nullptr;
  return handle;
}

uint32_t TPosixFileSystem::GetFileAttributesA(std::string_view path) {
  struct stat info {};
  if (stat(Locate(path).c_str(), &info) != 0) {
    Fail(errno);
    return INVALID_FILE_ATTRIBUTES;
  }
  uint32_t attributes = S_ISDIR(info.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : 0;
  if (!(info.st_mode & S_IWUSR)) attributes |= FILE_ATTRIBUTE_READONLY;
  return attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
}

bool TPosixFileSystem::CreateDirectoryA(std::string_view path) {
  return mkdir(Locate(path).c_str(), 0777) == 0 || Fail(errno);
}

bool TPosixFileSystem::CreatePrivateDirectory(std::string_view path) {
  return mkdir(Locate(path).c_str(), 0700) == 0 || Fail(errno);
}

bool TPosixFileSystem::RemoveDirectoryA(std::string_view path) {
  return rmdir(Locate(path).c_str()) == 0 || Fail(errno);
}

bool TPosixFileSystem::DeleteFileA(std::string_view path) {
  const uint32_t attributes = GetFileAttributesA(path);
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY)) return Fail(EACCES);
  return unlink(Locate(path).c_str()) == 0 || Fail(errno);
}

bool TPosixFileSystem::CopyPermissions(std::string_view source, std::string_view target) {
  struct stat info {};
  if (stat(Locate(source).c_str(), &info) != 0) return Fail(errno);
  return chmod(Locate(target).c_str(), (info.st_mode & 07777) | S_IWUSR) == 0 || Fail(errno);
}

std::string TPosixFileSystem::GetTempPathA() {
  const char* const folder = getenv("TMPDIR");
  const std::string path = ToWindowsPath(folder && *folder ? folder : "/tmp");
  return path.empty() || path.back() == '\\' ? path : path + '\\';
}

std::string TPosixFileSystem::GetLongPathNameA(std::string_view path) {
  const std::string found = ToWindowsPath(Locate(path));
  return found.empty() ? std::string(path) : found;
}

bool TPosixFileSystem::FlushWritten() {
  sync();
  return true;
}

}  // namespace win
