#include "tests/posix/HostCalls.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tests {
namespace {

thread_local THostFault* InForce = nullptr;

bool Strikes(const char* function) {
  return InForce && InForce->Strikes(function);
}

// Returns the function of that name in the next library.
template <class TFunction>
TFunction* Next(const char* name) {
  return reinterpret_cast<TFunction*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

THostFault::THostFault(size_t n, int error) : FNumber(n), FError(error) {
  InForce = this;
}

THostFault::THostFault(size_t n, std::function<void()> action) : THostFault(n) {
  FAction = std::move(action);
}

THostFault::~THostFault() {
  InForce = nullptr;
}

bool THostFault::Strikes(const char* function) {
  THostFault* const self = std::exchange(InForce, nullptr);  // calls made in here do not count
  FCalls.emplace_back(function);
  const bool strikes = FCalls.size() == FNumber;
  FHasStruck = FHasStruck || strikes;
  if (strikes && FError == kKill) kill(getpid(), SIGKILL);
  if (strikes && FAction) FAction();
  InForce = self;
  if (strikes && FError > 0) errno = FError;
  return strikes && FError > 0;
}

size_t THostFault::Transfer(size_t count) {
  return FCalls.size() == FNumber && FError == kShortTransfer ? std::max<size_t>(count / 2, 1) : count;
}

}  // namespace tests

// Defines the host's function `name` so that it fails when the current fault strikes.
#define KVA_HOST_CALL(result, failed, name, parameters, arguments)   \
  extern "C" result Test_##name parameters __asm__(#name);           \
  extern "C" result Test_##name parameters {                         \
    if (tests::Strikes(#name)) return failed;                        \
    static auto* const next = tests::Next<result parameters>(#name); \
    return next arguments;                                           \
  }

KVA_HOST_CALL(int, -1, fstat, (int fd, struct stat* info), (fd, info))
KVA_HOST_CALL(int, -1, fstatat, (int base, const char* path, struct stat* info, int flags),
              (base, path, info, flags))
KVA_HOST_CALL(int, -1, ftruncate, (int fd, off_t size), (fd, size))
KVA_HOST_CALL(int, -1, fsync, (int fd), (fd))
KVA_HOST_CALL(int, -1, syncfs, (int fd), (fd))
KVA_HOST_CALL(int, -1, flock, (int fd, int operation), (fd, operation))
KVA_HOST_CALL(int, -1, fchmod, (int fd, mode_t mode), (fd, mode))
KVA_HOST_CALL(int, -1, fchown, (int fd, uid_t owner, gid_t group), (fd, owner, group))
KVA_HOST_CALL(int, -1, futimens, (int fd, const timespec* times), (fd, times))
KVA_HOST_CALL(int, -1, mkdirat, (int base, const char* path, mode_t mode), (base, path, mode))
KVA_HOST_CALL(int, -1, unlinkat, (int base, const char* path, int flags), (base, path, flags))
KVA_HOST_CALL(int, -1, renameat, (int from, const char* source, int to, const char* target),
              (from, source, to, target))
KVA_HOST_CALL(int, -1, renameat2, (int from, const char* source, int to, const char* target, unsigned flags),
              (from, source, to, target, flags))
KVA_HOST_CALL(int, -1, linkat, (int from, const char* source, int to, const char* target, int flags),
              (from, source, to, target, flags))
KVA_HOST_CALL(ssize_t, -1, readlinkat, (int base, const char* path, char* buffer, size_t size),
              (base, path, buffer, size))
KVA_HOST_CALL(DIR*, nullptr, fdopendir, (int fd), (fd))
KVA_HOST_CALL(dirent*, nullptr, readdir, (DIR * directory), (directory))
KVA_HOST_CALL(ssize_t, -1, fgetxattr, (int fd, const char* name, void* value, size_t size),
              (fd, name, value, size))
KVA_HOST_CALL(ssize_t, -1, listxattr, (const char* path, char* names, size_t size), (path, names, size))
KVA_HOST_CALL(int, -1, fremovexattr, (int fd, const char* name), (fd, name))

extern "C" int Test_openat(int base, const char* path, int flags, ...) __asm__("openat");
extern "C" int Test_openat(int base, const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if (tests::Strikes("openat")) return -1;
  static auto* const next = tests::Next<int(int, const char*, int, ...)>("openat");
  return next(base, path, flags, mode);
}

extern "C" int Test_fcntl(int fd, int command, ...) __asm__("fcntl");
extern "C" int Test_fcntl(int fd, int command, ...) {
  va_list rest;
  va_start(rest, command);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  if (tests::Strikes("fcntl")) return -1;
  static auto* const next = tests::Next<int(int, int, ...)>("fcntl");
  return next(fd, command, argument);
}

extern "C" ssize_t Test_read(int fd, void* buffer, size_t count) __asm__("read");
extern "C" ssize_t Test_read(int fd, void* buffer, size_t count) {
  if (tests::Strikes("read")) return -1;
  static auto* const next = tests::Next<ssize_t(int, void*, size_t)>("read");
  return next(fd, buffer, tests::InForce ? tests::InForce->Transfer(count) : count);
}

extern "C" ssize_t Test_write(int fd, const void* buffer, size_t count) __asm__("write");
extern "C" ssize_t Test_write(int fd, const void* buffer, size_t count) {
  if (tests::Strikes("write")) return -1;
  static auto* const next = tests::Next<ssize_t(int, const void*, size_t)>("write");
  return next(fd, buffer, tests::InForce ? tests::InForce->Transfer(count) : count);
}

// Closes the file even if it reports a failure, as the host does.
extern "C" int Test_close(int fd) __asm__("close");
extern "C" int Test_close(int fd) {
  static auto* const next = tests::Next<int(int)>("close");
  const int result = next(fd);
  return tests::Strikes("close") ? -1 : result;
}
