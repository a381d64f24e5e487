#include "FaultPlan.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace faults {
namespace {

// The library must not allocate, because malloc calls it, so everything has a fixed size. Its own calls go
// directly to the kernel, because they must not be counted.
constexpr size_t kMostFiles = 4096;
constexpr size_t kMostListed = 4096;
constexpr const char* kKindNames[] = {"open", "create", "read",  "list",   "look",  "write", "copy",
                                      "size", "rename", "link",  "unlink", "mkdir", "mode",  "owner",
                                      "time", "label",  "flush", "close",  "lock",  "dup",   "thread"};
constexpr size_t kKinds = sizeof kKindNames / sizeof *kKindNames;
// Folders that the run neither creates nor changes.
constexpr const char* kSystemFolders[] = {"/proc/", "/sys/",     "/etc/",   "/usr/",
                                          "/lib",   "/dev/null", "/dev/tty"};

enum class TAction { List, Kill, Part, Cut, Fail, Short, Run, Memory };

struct TPlan {
  TAction Action = TAction::List;
  unsigned long At = 0;
  unsigned Kinds = 0;  // one bit per kind
  int Errno = 0;
  bool Lasting = false;
  const char* Command = nullptr;
  const char* List = nullptr;
  const char* Report = nullptr;
};

struct TListed {
  TKind Kind;
  char Name[160];
};

struct TWritten {
  dev_t Device;
  ino_t Inode;
  int Fd;         // opened separately, so that a lock ends with the program's own descriptor
  off_t Flushed;  // bytes that are flushed
  bool Dirty;
};

TPlan plan;
std::atomic<bool> started = false;
std::atomic<bool> fired = false;
std::atomic<unsigned long> operations = 0;
std::atomic<unsigned long> allocations = 0;
TListed listed[kMostListed];
TWritten written[kMostFiles];
size_t writtenCount = 0;
std::atomic_flag writtenLock = ATOMIC_FLAG_INIT;

struct TLocked {
  TLocked() {
    while (writtenLock.test_and_set()) syscall(SYS_sched_yield);
  }
  ~TLocked() { writtenLock.clear(); }
};

const char* Variable(const char* name) {
  const char* value = getenv(name);
  return value && *value ? value : nullptr;
}

unsigned KindsOf(const char* names) {
  if (!names) return ~0U;
  unsigned kinds = 0;
  for (size_t kind = 0; kind < kKinds; ++kind) {
    const size_t length = strlen(kKindNames[kind]);
    for (const char* at = names; (at = strstr(at, kKindNames[kind])) != nullptr; at += length) {
      if ((at == names || at[-1] == ',') && (at[length] == ',' || at[length] == '\0')) kinds |= 1U << kind;
    }
  }
  return kinds;
}

TAction ActionOf(const char* name) {
  constexpr const char* kNames[] = {"list", "kill", "part", "cut", "fail", "short", "run", "memory"};
  for (size_t i = 0; i < sizeof kNames / sizeof *kNames; ++i)
    if (strcmp(kNames[i], name) == 0) return static_cast<TAction>(i);
  fprintf(stderr, "faults: no such action: %s\n", name);
  _exit(99);
}

void WriteRaw(int fd, const char* text, size_t length) {
  while (length > 0) {
    const long done = syscall(SYS_write, fd, text, length);
    if (done <= 0) return;
    text += done;
    length -= static_cast<size_t>(done);
  }
}

bool StatRaw(int fd, struct stat& info) {
  return syscall(SYS_fstat, fd, &info) == 0;
}

int OpenRaw(const char* path, int flags) {
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags | O_CLOEXEC, 0600));
}

// Stores "/folder/name" of an operation. An unnamed file gets the kernel's name for it.
void NameOf(int fd, const char* path, char* name, size_t size) {
  char link[32];
  char folder[512];
  folder[0] = '\0';
  if (fd >= 0 && (!path || path[0] != '/')) {
    snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    const long length = syscall(SYS_readlink, link, folder, sizeof folder - 1);
    folder[length > 0 ? length : 0] = '\0';
  }
  snprintf(name, size, "%s%s%s", folder, folder[0] && path ? "/" : "", path ? path : "");
}

void WriteLine(int fd, unsigned long number, TKind kind, const char* name) {
  char line[256];
  const int length =
      snprintf(line, sizeof line, "%lu %s %s\n", number, kKindNames[static_cast<size_t>(kind)], name);
  const size_t most = sizeof line - 1;
  WriteRaw(fd, line, static_cast<size_t>(length) < most ? static_cast<size_t>(length) : most);
}

void Report(unsigned long number, TKind kind, int fd, const char* path) {
  if (!plan.Report) return;
  char name[160];
  NameOf(fd, path, name, sizeof name);
  const int file = OpenRaw(plan.Report, O_WRONLY | O_CREAT | O_APPEND);
  WriteLine(file, number, kind, name);
  syscall(SYS_close, file);
}

// Simulates a power cut: of each written file, only the bytes flushed last remain.
void LoseUnflushed() {
  const TLocked locked;
  for (size_t i = 0; i < writtenCount; ++i) {
    struct stat info {};
    if (!written[i].Dirty || !StatRaw(written[i].Fd, info)) continue;
    syscall(SYS_ftruncate, written[i].Fd, written[i].Flushed);
    const timespec times[2] = {info.st_atim, info.st_mtim};
    syscall(SYS_utimensat, written[i].Fd, nullptr, times, 0);
  }
}

void RunCommand() {
  char* arguments[] = {const_cast<char*>("sh"), const_cast<char*>("-c"), const_cast<char*>(plan.Command),
                       nullptr};
  char* environment[1024];
  size_t count = 0;
  for (char** entry = environ; *entry && count < 1023; ++entry) {
    if (strncmp(*entry, "LD_PRELOAD=", 11) != 0 && strncmp(*entry, "FAULTS_", 7) != 0)
      environment[count++] = *entry;
  }
  environment[count] = nullptr;
  pid_t child = 0;
  if (posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments, environment) != 0) {
    fprintf(stderr, "faults: the command cannot be run\n");
    _exit(99);
  }
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

TWritten* FindWritten(int fd, struct stat& info) {
  if (!StatRaw(fd, info)) return nullptr;
  for (size_t i = 0; i < writtenCount; ++i) {
    if (written[i].Device == info.st_dev && written[i].Inode == info.st_ino) return &written[i];
  }
  return nullptr;
}

__attribute__((destructor)) void End() {
  if (!started.exchange(false)) return;
  if (plan.Action == TAction::Cut && !fired) LoseUnflushed();
  if (!plan.List) return;
  const int file = OpenRaw(plan.List, O_WRONLY | O_CREAT | O_TRUNC);
  if (plan.Action == TAction::Memory) {
    char line[32];
    WriteRaw(file, line, static_cast<size_t>(snprintf(line, sizeof line, "%lu\n", allocations.load())));
  }
  for (unsigned long i = 0; i < operations && i < kMostListed && plan.Action == TAction::List; ++i)
    WriteLine(file, i + 1, listed[i].Kind, listed[i].Name);
  syscall(SYS_close, file);
}

}  // namespace

void Start() {
  if (const char* action = Variable("FAULTS_ACTION")) plan.Action = ActionOf(action);
  if (const char* at = Variable("FAULTS_AT")) plan.At = strtoul(at, nullptr, 10);
  if (const char* number = Variable("FAULTS_ERRNO")) plan.Errno = atoi(number);
  plan.Kinds = KindsOf(Variable("FAULTS_KINDS"));
  plan.Lasting = Variable("FAULTS_LASTING") != nullptr;
  plan.Command = Variable("FAULTS_COMMAND");
  plan.List = Variable("FAULTS_LIST");
  plan.Report = Variable("FAULTS_REPORT");
  started = true;
}

bool IsForeign(int fd, const char* path) {
  if (!started) return true;
  if (path && path[0] == '/') {
    for (const char* folder : kSystemFolders)
      if (strncmp(path, folder, strlen(folder)) == 0) return true;
    return false;
  }
  return fd >= 0 && fd <= 2;
}

TVerdict Operation(TKind kind, int fd, const char* path) {
  const unsigned long number = ++operations;
  if (plan.Action == TAction::List) {
    if (number <= kMostListed) {
      listed[number - 1].Kind = kind;
      NameOf(fd, path, listed[number - 1].Name, sizeof listed[number - 1].Name);
    }
    return {};
  }
  if (plan.Action == TAction::Memory || number < plan.At ||
      !(plan.Kinds & (1U << static_cast<unsigned>(kind))))
    return {};
  const bool first = !fired.exchange(true);
  if (!first && !plan.Lasting) return {};
  if (first) Report(number, kind, fd, path);
  switch (plan.Action) {
    case TAction::Kill:
      Kill();
    case TAction::Cut:
      LoseUnflushed();
      Kill();
    case TAction::Part:
      return {0, false, true};
    case TAction::Fail:
      return {plan.Errno, false, false};
    case TAction::Short:
      return {0, true, false};
    case TAction::Run:
      RunCommand();
      return {};
    default:
      return {};
  }
}

void Kill() {
  for (;;) {
    syscall(SYS_kill, getpid(), SIGKILL);
    syscall(SYS_pause);
  }
}

void NoteWritten(int fd) {
  if (plan.Action != TAction::Cut) return;
  const TLocked locked;
  struct stat info {};
  TWritten* file = FindWritten(fd, info);
  if (!file) {
    if (writtenCount == kMostFiles || !S_ISREG(info.st_mode)) return;
    char link[32];
    snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    file = &written[writtenCount++];
    *file = {info.st_dev, info.st_ino, OpenRaw(link, O_WRONLY), 0, true};
  }
  if (info.st_size < file->Flushed) file->Flushed = info.st_size;
  file->Dirty = true;
}

void NoteFlushed(int fd) {
  if (plan.Action != TAction::Cut) return;
  const TLocked locked;
  struct stat info {};
  if (TWritten* file = FindWritten(fd, info)) {
    file->Flushed = info.st_size;
    file->Dirty = false;
  }
}

void NoteAllFlushed() {
  const TLocked locked;
  for (size_t i = 0; i < writtenCount; ++i) {
    struct stat info {};
    if (StatRaw(written[i].Fd, info)) written[i].Flushed = info.st_size;
    written[i].Dirty = false;
  }
}

bool FailsAllocation() {
  if (!started || plan.Action != TAction::Memory) return false;
  const unsigned long number = ++allocations;
  return plan.At != 0 && (plan.Lasting ? number >= plan.At : number == plan.At);
}

}  // namespace faults
