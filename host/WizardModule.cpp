#include "host/WizardModule.h"

#include <dlfcn.h>
#include <string>

#include "host/HostError.h"
#include "win/Drives.h"

namespace host {

TWizardModule::TWizardModule(std::string_view fileName)
    : FLibrary(dlopen(win::ToHostName(fileName).c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (!FLibrary) {
    const char* reason = dlerror();
    throw EHostError(
        At(fileName, 0, std::string("this module cannot be loaded: ") + (reason ? reason : "?")));
  }
  FInit = reinterpret_cast<toolsapi::TWizardInitProc>(dlsym(FLibrary, toolsapi::kWizardEntryPoint));
  if (!FInit) {
    dlclose(FLibrary);
    throw EHostError(At(
        fileName, 0, std::string("this is no wizard: it has no entry ") + toolsapi::kWizardEntryPoint + "."));
  }
}

TWizardModule::~TWizardModule() {
  if (FTerminate) FTerminate();
  dlclose(FLibrary);
}

}  // namespace host
