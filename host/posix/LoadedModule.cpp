#include "host/LoadedModule.h"

#include <dlfcn.h>
#ifdef __linux__
#include <link.h>
#endif
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "host/HostError.h"
#include "rtl/text/Streams.h"
#include "win/paths/Drives.h"

namespace host {

namespace {

// Refuses a truncated module. The loader maps a module without checking its length, and accessing a page
// after the end of the file would kill the process.
void RefuseCutModule(std::string_view fileName) {
#ifdef __linux__
  rtl::TFileStream file(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
  const auto size = static_cast<uint64_t>(file.Size());
  ElfW(Ehdr) header{};
  if (file.Read(&header, sizeof header) != sizeof header) return;  // no module; the loader refuses it
  if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_phentsize != sizeof(ElfW(Phdr))) return;
  file.SetPosition(static_cast<int64_t>(std::min<uint64_t>(header.e_phoff, size)));
  for (int i = 0; i < header.e_phnum; ++i) {
    ElfW(Phdr) segment{};
    const bool isRead = file.Read(&segment, sizeof segment) == sizeof segment;
    const bool isWhole =
        isRead && (segment.p_type != PT_LOAD ||
                   (segment.p_offset <= size && segment.p_filesz <= size - segment.p_offset));
    if (!isWhole) throw EHostError(At(fileName, 0, "this module is damaged: its end is missing."));
  }
#else
  static_cast<void>(fileName);
#endif
}

void* Load(std::string_view fileName) {
  RefuseCutModule(fileName);
  void* const library = dlopen(win::ToHostName(fileName).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library) return library;
  const char* const reason = dlerror();
  throw EHostError(At(fileName, 0, std::string("this module cannot be loaded: ") + (reason ? reason : "?")));
}

}  // namespace

TLoadedModule::TLoadedModule(std::string_view fileName) : FLibrary(Load(fileName)) {}

TLoadedModule::~TLoadedModule() {
  dlclose(FLibrary);
}

void* TLoadedModule::Find(const char* name) const {
  return dlsym(FLibrary, name);
}

}  // namespace host
