#include "host/LoadedModule.h"

#include "host/HostError.h"
#include "win/Errors.h"
#include "win/windows/WindowsPath.h"

namespace host {

namespace {

HMODULE Load(std::string_view fileName) {
  std::wstring full;
  HMODULE library = nullptr;
  if (win::FullPath(fileName, win::TPathKind::File, full)) {
    // The libraries that the module needs are looked for beside it, too.
    library = LoadLibraryExW(win::WithoutPrefix(full).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library) win::FailLast();
  }
  if (library) return library;
  throw EHostError(
      At(fileName, 0, "this module cannot be loaded: " + win::SysErrorMessage(win::GetLastError())));
}

}  // namespace

TLoadedModule::TLoadedModule(std::string_view fileName) : FLibrary(Load(fileName)) {}

TLoadedModule::~TLoadedModule() {
  FreeLibrary(static_cast<HMODULE>(FLibrary));
}

void* TLoadedModule::Find(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(FLibrary), name));
}

}  // namespace host
