// The host's services: the object behind BorlandIDEServices.
#pragma once

#include "toolsapi/HostRuntime.h"
#include "toolsapi/InterfacedObject.h"
#include "toolsapi/ToolsAPI.h"

namespace host {

class THost;

class THostServices final
    : public toolsapi::TInterfacedObject<toolsapi::IOTAModuleServices, toolsapi::IOTAActionServices,
                                         toolsapi::INTAServices, toolsapi::IHostRuntime> {
 public:
  explicit THostServices(THost& host) : FHost(&host) {}
  // From here on every operation raises EHostError: the host has ended, and somebody still holds its
  // services.
  void CutOff() { FHost = nullptr; }

  int GetModuleCount() override;
  toolsapi::TIntf<toolsapi::IOTAModule> GetModule(int index) override;

  bool ReloadFile(std::string_view fileName) override;
  // An empty name opens nothing and gives False.
  bool OpenProject(std::string_view fileName, bool newProjGroup) override;

  rtl::TMainMenu* GetMainMenu() override;
  // Raises EHostError when no item bears `name`. This host knows no actions: `action` must be null.
  void AddActionMenu(std::string_view name, rtl::TAction* action, rtl::TMenuItem* menuItem, bool insertAfter,
                     bool insertAsChild) override;

  rtl::IFrontEnd* GetFrontEnd() override;
  uint32_t GetSourceCodePage() override;
  std::string GetDriveFolder(char letter) override;
  void ShowWaiting(bool waiting) override;
  void RunAdvanced(const toolsapi::TRunStep& step) override;
  void RunWarning(std::string_view message) override;

 private:
  THost& Host() const;

  THost* FHost;
};

}  // namespace host
