// A loadable module that contains a wizard, loaded as the IDE loads it.
#pragma once

#include <string_view>

#include "host/LoadedModule.h"
#include "toolsapi/ToolsAPI.h"

namespace host {

class TWizardModule {
 public:
  // Loads the module `fileName`, a full Windows path, and finds its entry point. Raises EHostError if the
  // file is no module or has no entry point; nothing stays loaded in that case.
  explicit TWizardModule(std::string_view fileName);
  // Calls the termination procedure that the module set, if any, and unloads the module. No client may
  // still hold an object whose code is in the module: wizards, menu handlers.
  ~TWizardModule();
  TWizardModule(const TWizardModule&) = delete;
  TWizardModule& operator=(const TWizardModule&) = delete;

  // Calls the entry point. Returns false if the module refuses to be loaded.
  [[nodiscard]] bool Init(const toolsapi::TIntf<toolsapi::IInterface>& services,
                          toolsapi::TWizardRegisterProc registerProc) {
    return FInit(services, registerProc, &FTerminate);
  }

 private:
  TLoadedModule FLibrary;
  toolsapi::TWizardInitProc FInit;
  toolsapi::TWizardTerminateProc FTerminate = nullptr;
};

}  // namespace host
