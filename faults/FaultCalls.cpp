// The functions of the C library that access the disk: each call is counted, and forwarded or failed.
#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "FaultPlan.h"

namespace {

using faults::TKind;
using faults::TVerdict;

template <typename TFunction>
TFunction Next(const char* name) {
  return reinterpret_cast<TFunction>(dlsym(RTLD_NEXT, name));
}

bool Fails(const TVerdict& verdict) {
  if (verdict.Errno != 0) errno = verdict.Errno;
  return verdict.Errno != 0;
}

TVerdict Ask(TKind kind, int fd, const char* path) {
  return faults::IsForeign(fd, path) ? TVerdict{} : faults::Operation(kind, fd, path);
}

// Performs an operation that cannot be done in part.
template <typename TAction>
auto Do(TKind kind, int fd, const char* path, TAction action) -> decltype(action()) {
  if (Fails(Ask(kind, fd, path))) return static_cast<decltype(action())>(-1);
  return action();
}

// Performs an operation on `count` bytes, of which only some may be handled.
template <typename TAction>
ssize_t DoBytes(TKind kind, int fd, size_t count, TAction action) {
  const TVerdict verdict = Ask(kind, fd, nullptr);
  if (Fails(verdict)) return -1;
  const bool half = (verdict.Short || verdict.Part) && count > 1;
  const ssize_t done = action(half ? count / 2 : count);
  if (verdict.Part) faults::Kill();
  return done;
}

template <typename TAction>
ssize_t Write(TKind kind, int fd, size_t count, TAction action) {
  const ssize_t done = DoBytes(kind, fd, count, action);
  if (done > 0 && !faults::IsForeign(fd, nullptr)) faults::NoteWritten(fd);
  return done;
}

template <typename TAction>
int Open(int base, const char* path, int flags, TAction action) {
  const bool writes = (flags & O_ACCMODE) != O_RDONLY || (flags & O_CREAT) != 0;
  const int fd = Do(writes ? TKind::Create : TKind::Open, base, path, action);
  if (fd >= 0 && (flags & O_TRUNC) && !faults::IsForeign(base, path)) faults::NoteWritten(fd);
  return fd;
}

mode_t ModeOf(int flags, va_list arguments) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

int Flush(int fd, int (*flush)(int)) {
  const int result = Do(TKind::Flush, fd, nullptr, [&] { return flush(fd); });
  if (result == 0 && !faults::IsForeign(fd, nullptr)) faults::NoteFlushed(fd);
  return result;
}

}  // namespace

#define NEXT(name) static const auto next = Next<decltype(&name)>(#name)

extern "C" {

// Opening and closing

int open(const char* path, int flags, ...) {
  NEXT(open);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open(AT_FDCWD, path, flags, [&] { return next(path, flags, mode); });
}

int open64(const char* path, int flags, ...) {
  NEXT(open64);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open(AT_FDCWD, path, flags, [&] { return next(path, flags, mode); });
}

int openat(int base, const char* path, int flags, ...) {
  NEXT(openat);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open(base, path, flags, [&] { return next(base, path, flags, mode); });
}

int openat64(int base, const char* path, int flags, ...) {
  NEXT(openat64);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open(base, path, flags, [&] { return next(base, path, flags, mode); });
}

FILE* fopen(const char* path, const char* mode) {
  NEXT(fopen);
  if (Fails(Ask(*mode == 'r' && !mode[1] ? TKind::Open : TKind::Create, AT_FDCWD, path))) return nullptr;
  return next(path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
  NEXT(fopen64);
  if (Fails(Ask(*mode == 'r' && !mode[1] ? TKind::Open : TKind::Create, AT_FDCWD, path))) return nullptr;
  return next(path, mode);
}

// The descriptor is closed even if close fails, as on Linux.
int close(int fd) {
  NEXT(close);
  const TVerdict verdict = Ask(TKind::Close, fd, nullptr);
  const int result = next(fd);
  return Fails(verdict) ? -1 : result;
}

int fcntl(int fd, int command, ...) {
  NEXT(fcntl);
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  const auto call = [&] { return next(fd, command, argument); };
  switch (command) {
    case F_DUPFD:
    case F_DUPFD_CLOEXEC:
      return Do(TKind::Dup, fd, nullptr, call);
    case F_SETLK:
    case F_SETLKW:
    case F_OFD_SETLK:
    case F_OFD_SETLKW:
      return Do(TKind::Lock, fd, nullptr, call);
    default:
      return call();
  }
}

int dup(int fd) {
  NEXT(dup);
  return Do(TKind::Dup, fd, nullptr, [&] { return next(fd); });
}

int flock(int fd, int operation) {
  NEXT(flock);
  return Do(TKind::Lock, fd, nullptr, [&] { return next(fd, operation); });
}

// Reading

ssize_t read(int fd, void* buffer, size_t count) {
  NEXT(read);
  return DoBytes(TKind::Read, fd, count, [&](size_t part) { return next(fd, buffer, part); });
}

ssize_t pread(int fd, void* buffer, size_t count, off_t offset) {
  NEXT(pread);
  return DoBytes(TKind::Read, fd, count, [&](size_t part) { return next(fd, buffer, part, offset); });
}

DIR* opendir(const char* path) {
  NEXT(opendir);
  return Fails(Ask(TKind::Open, AT_FDCWD, path)) ? nullptr : next(path);
}

DIR* fdopendir(int fd) {
  NEXT(fdopendir);
  return Fails(Ask(TKind::Open, fd, nullptr)) ? nullptr : next(fd);
}

struct dirent* readdir(DIR* folder) {
  NEXT(readdir);
  return Fails(Ask(TKind::List, dirfd(folder), nullptr)) ? nullptr : next(folder);
}

struct dirent64* readdir64(DIR* folder) {
  NEXT(readdir64);
  return Fails(Ask(TKind::List, dirfd(folder), nullptr)) ? nullptr : next(folder);
}

int stat(const char* path, struct stat* info) {
  NEXT(stat);
  return Do(TKind::Look, AT_FDCWD, path, [&] { return next(path, info); });
}

int lstat(const char* path, struct stat* info) {
  NEXT(lstat);
  return Do(TKind::Look, AT_FDCWD, path, [&] { return next(path, info); });
}

int fstat(int fd, struct stat* info) {
  NEXT(fstat);
  return Do(TKind::Look, fd, nullptr, [&] { return next(fd, info); });
}

int fstatat(int base, const char* path, struct stat* info, int flags) {
  NEXT(fstatat);
  return Do(TKind::Look, base, path, [&] { return next(base, path, info, flags); });
}

int statx(int base, const char* path, int flags, unsigned mask, struct statx* info) {
  NEXT(statx);
  return Do(TKind::Look, base, path, [&] { return next(base, path, flags, mask, info); });
}

int access(const char* path, int mode) {
  NEXT(access);
  return Do(TKind::Look, AT_FDCWD, path, [&] { return next(path, mode); });
}

int faccessat(int base, const char* path, int mode, int flags) {
  NEXT(faccessat);
  return Do(TKind::Look, base, path, [&] { return next(base, path, mode, flags); });
}

ssize_t readlink(const char* path, char* text, size_t size) {
  NEXT(readlink);
  return Do(TKind::Look, AT_FDCWD, path, [&] { return next(path, text, size); });
}

ssize_t readlinkat(int base, const char* path, char* text, size_t size) {
  NEXT(readlinkat);
  return Do(TKind::Look, base, path, [&] { return next(base, path, text, size); });
}

ssize_t listxattr(const char* path, char* names, size_t size) {
  NEXT(listxattr);
  return Do(TKind::Look, AT_FDCWD, path, [&] { return next(path, names, size); });
}

ssize_t flistxattr(int fd, char* names, size_t size) {
  NEXT(flistxattr);
  return Do(TKind::Look, fd, nullptr, [&] { return next(fd, names, size); });
}

ssize_t getxattr(const char* path, const char* name, void* value, size_t size) {
  NEXT(getxattr);
  return Do(TKind::Look, AT_FDCWD, path, [&] { return next(path, name, value, size); });
}

ssize_t fgetxattr(int fd, const char* name, void* value, size_t size) {
  NEXT(fgetxattr);
  return Do(TKind::Look, fd, nullptr, [&] { return next(fd, name, value, size); });
}

// Writing

ssize_t write(int fd, const void* buffer, size_t count) {
  NEXT(write);
  return Write(TKind::Write, fd, count, [&](size_t part) { return next(fd, buffer, part); });
}

ssize_t pwrite(int fd, const void* buffer, size_t count, off_t offset) {
  NEXT(pwrite);
  return Write(TKind::Write, fd, count, [&](size_t part) { return next(fd, buffer, part, offset); });
}

ssize_t copy_file_range(int from, off64_t* fromOffset, int to, off64_t* toOffset, size_t count,
                        unsigned flags) {
  NEXT(copy_file_range);
  return Write(TKind::Copy, to, count,
               [&](size_t part) { return next(from, fromOffset, to, toOffset, part, flags); });
}

ssize_t sendfile(int to, int from, off_t* offset, size_t count) {
  NEXT(sendfile);
  return Write(TKind::Copy, to, count, [&](size_t part) { return next(to, from, offset, part); });
}

int ftruncate(int fd, off_t size) {
  NEXT(ftruncate);
  const int result = Do(TKind::Size, fd, nullptr, [&] { return next(fd, size); });
  if (result == 0) faults::NoteWritten(fd);
  return result;
}

int fallocate(int fd, int mode, off_t offset, off_t size) {
  NEXT(fallocate);
  return Do(TKind::Size, fd, nullptr, [&] { return next(fd, mode, offset, size); });
}

int fsync(int fd) {
  NEXT(fsync);
  return Flush(fd, next);
}

int fdatasync(int fd) {
  NEXT(fdatasync);
  return Flush(fd, next);
}

int syncfs(int fd) {
  NEXT(syncfs);
  const int result = Do(TKind::Flush, fd, nullptr, [&] { return next(fd); });
  if (result == 0) faults::NoteAllFlushed();
  return result;
}

void sync() {
  NEXT(sync);
  if (Fails(Ask(TKind::Flush, AT_FDCWD, nullptr))) return;
  next();
  faults::NoteAllFlushed();
}

// Names

int rename(const char* from, const char* to) {
  NEXT(rename);
  return Do(TKind::Rename, AT_FDCWD, to, [&] { return next(from, to); });
}

int renameat(int fromBase, const char* from, int toBase, const char* to) {
  NEXT(renameat);
  return Do(TKind::Rename, toBase, to, [&] { return next(fromBase, from, toBase, to); });
}

int renameat2(int fromBase, const char* from, int toBase, const char* to, unsigned flags) {
  NEXT(renameat2);
  return Do(TKind::Rename, toBase, to, [&] { return next(fromBase, from, toBase, to, flags); });
}

int link(const char* from, const char* to) {
  NEXT(link);
  return Do(TKind::Link, AT_FDCWD, to, [&] { return next(from, to); });
}

int linkat(int fromBase, const char* from, int toBase, const char* to, int flags) {
  NEXT(linkat);
  return Do(TKind::Link, toBase, to, [&] { return next(fromBase, from, toBase, to, flags); });
}

int symlinkat(const char* text, int base, const char* path) {
  NEXT(symlinkat);
  return Do(TKind::Link, base, path, [&] { return next(text, base, path); });
}

int unlink(const char* path) {
  NEXT(unlink);
  return Do(TKind::Unlink, AT_FDCWD, path, [&] { return next(path); });
}

int unlinkat(int base, const char* path, int flags) {
  NEXT(unlinkat);
  return Do(TKind::Unlink, base, path, [&] { return next(base, path, flags); });
}

int rmdir(const char* path) {
  NEXT(rmdir);
  return Do(TKind::Unlink, AT_FDCWD, path, [&] { return next(path); });
}

int mkdir(const char* path, mode_t mode) {
  NEXT(mkdir);
  return Do(TKind::MakeDir, AT_FDCWD, path, [&] { return next(path, mode); });
}

int mkdirat(int base, const char* path, mode_t mode) {
  NEXT(mkdirat);
  return Do(TKind::MakeDir, base, path, [&] { return next(base, path, mode); });
}

// Attributes

int chmod(const char* path, mode_t mode) {
  NEXT(chmod);
  return Do(TKind::Mode, AT_FDCWD, path, [&] { return next(path, mode); });
}

int fchmod(int fd, mode_t mode) {
  NEXT(fchmod);
  return Do(TKind::Mode, fd, nullptr, [&] { return next(fd, mode); });
}

int fchmodat(int base, const char* path, mode_t mode, int flags) {
  NEXT(fchmodat);
  return Do(TKind::Mode, base, path, [&] { return next(base, path, mode, flags); });
}

int fchown(int fd, uid_t user, gid_t group) {
  NEXT(fchown);
  return Do(TKind::Owner, fd, nullptr, [&] { return next(fd, user, group); });
}

int fchownat(int base, const char* path, uid_t user, gid_t group, int flags) {
  NEXT(fchownat);
  return Do(TKind::Owner, base, path, [&] { return next(base, path, user, group, flags); });
}

int futimens(int fd, const struct timespec* times) {
  NEXT(futimens);
  return Do(TKind::Time, fd, nullptr, [&] { return next(fd, times); });
}

int utimensat(int base, const char* path, const struct timespec* times, int flags) {
  NEXT(utimensat);
  return Do(TKind::Time, base, path, [&] { return next(base, path, times, flags); });
}

int fsetxattr(int fd, const char* name, const void* value, size_t size, int flags) {
  NEXT(fsetxattr);
  return Do(TKind::Label, fd, nullptr, [&] { return next(fd, name, value, size, flags); });
}

// Threads: the error is the result.

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument) {
  NEXT(pthread_create);
  const TVerdict verdict = Ask(TKind::Thread, AT_FDCWD, nullptr);
  return verdict.Errno != 0 ? verdict.Errno : next(thread, attributes, run, argument);
}

}  // extern "C"
