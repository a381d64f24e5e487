// A loadable module with a wizard in it, loaded as the IDE would.
#pragma once

#include <string_view>

#include "toolsapi/ToolsAPI.h"

namespace host {

class TWizardModule {
 public:
  // Loads the module `fileName`, a full Windows path, and finds its entry point. Raises EHostError, and
  // nothing stays loaded, when the file is no module or has no entry point.
  explicit TWizardModule(std::string_view fileName);
  // Calls the termination procedure that the module gave, if any, and unloads it. By then nobody may hold
  // anything whose code is in the module: wizards, menu handlers.
  ~TWizardModule();
  TWizardModule(const TWizardModule&) = delete;
  TWizardModule& operator=(const TWizardModule&) = delete;

  // Calls the entry point. False when the module refuses.
  [[nodiscard]] bool Init(const toolsapi::TIntf<toolsapi::IInterface>& services,
                          toolsapi::TWizardRegisterProc registerProc) {
    return FInit(services, registerProc, &FTerminate);
  }

 private:
  void* FLibrary;
  toolsapi::TWizardInitProc FInit;
  toolsapi::TWizardTerminateProc FTerminate = nullptr;
};

}  // namespace host
