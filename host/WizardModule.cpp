#include "host/WizardModule.h"

#include <string>

#include "host/HostError.h"

namespace host {

TWizardModule::TWizardModule(std::string_view fileName) : FLibrary(fileName) {
  FInit = reinterpret_cast<toolsapi::TWizardInitProc>(FLibrary.Find(toolsapi::kWizardEntryPoint));
  if (!FInit) {
    throw EHostError(At(
        fileName, 0, std::string("this is no wizard: it has no entry ") + toolsapi::kWizardEntryPoint + "."));
  }
}

TWizardModule::~TWizardModule() {
  try {
    if (FTerminate) FTerminate();
  } catch (...) {  // unload the module anyway
  }
}

}  // namespace host
