// The host's services: the object that BorlandIDEServices refers to.
#pragma once

#include "MigWizard/run/FindingsCollector.h"
#include "toolsapi/HostRuntime.h"
#include "toolsapi/InterfacedObject.h"
#include "toolsapi/ToolsAPI.h"

namespace host {

class THost;

class THostServices final
    : public toolsapi::TInterfacedObject<toolsapi::IOTAModuleServices, toolsapi::IOTAActionServices,
                                         toolsapi::INTAServices, toolsapi::IHostRuntime, mig::IRunResults> {
 public:
  explicit THostServices(THost& host) : FHost(&host) {}
  // Called when the host is destroyed while clients still hold its services. After that every operation
  // raises EHostError.
  void Disconnect() { FHost = nullptr; }

  int GetModuleCount() override;
  toolsapi::TIntf<toolsapi::IOTAModule> GetModule(int index) override;

  bool ReloadFile(std::string_view fileName) override;
  // Returns false for an empty name.
  bool OpenProject(std::string_view fileName, bool newProjGroup) override;

  rtl::TMainMenu* GetMainMenu() override;
  // Raises EHostError if no item has that name. This host has no actions: `action` must be null.
  void AddActionMenu(std::string_view name, rtl::TAction* action, rtl::TMenuItem* menuItem, bool insertAfter,
                     bool insertAsChild) override;

  rtl::IFrontEnd* GetFrontEnd() override;
  uint32_t GetSourceCodePage() override;
  std::string GetDriveFolder(char letter) override;
  void ShowWaiting(bool waiting) override;
  void RunAdvanced(const toolsapi::TRunStep& step) override;
  void RunWarning(std::string_view message) override;
  std::vector<std::string> GetMissingFiles() override;
  bool CanShowChanges() override;
  void ShowChanges() override;

  void RunConverted(const mig::TRunResult& result) override;

 private:
  THost& Host() const;

  THost* FHost;
};

}  // namespace host
