// The allocator, which fails one allocation, and the start of main(), where counting begins.
#include <cerrno>
#include <dlfcn.h>
#include <stdlib.h>

#include "FaultPlan.h"

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* old, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

namespace {

bool Fails() {
  if (!faults::FailsAllocation()) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace

void* malloc(size_t size) {
  return Fails() ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return Fails() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* old, size_t size) {
  return Fails() ? nullptr : __libc_realloc(old, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  return Fails() ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void** result, size_t alignment, size_t size) {
  *result = Fails() ? nullptr : __libc_memalign(alignment, size);
  return *result ? 0 : ENOMEM;
}

using TMain = int (*)(int, char**, char**);

static TMain programMain = nullptr;

static int StartAndRun(int argc, char** argv, char** environment) {
  faults::Start();
  return programMain(argc, argv, environment);
}

int __libc_start_main(TMain main, int argc, char** argv, void (*init)(), void (*fini)(), void (*loaderFini)(),
                      void* stackEnd) {
  programMain = main;
  const auto next = reinterpret_cast<int (*)(TMain, int, char**, void (*)(), void (*)(), void (*)(), void*)>(
      dlsym(RTLD_NEXT, "__libc_start_main"));
  return next(StartAndRun, argc, argv, init, fini, loaderFini, stackEnd);
}

}  // extern "C"
