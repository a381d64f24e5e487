#include "host/HostServices.h"

#include <string>

#include "host/Host.h"
#include "host/HostError.h"
#include "qrl/QrlVcl.h"
#include "rtl/forms/Application.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace host {

THost& THostServices::Host() const {
  if (!FHost) throw EHostError("The host has ended.");
  return *FHost;
}

int THostServices::GetModuleCount() {
  return Host().ModuleCount();
}

toolsapi::TIntf<toolsapi::IOTAModule> THostServices::GetModule(int index) {
  return Host().Module(index).Interface();
}

bool THostServices::ReloadFile(std::string_view fileName) {
  return Host().ReloadFile(fileName);
}

bool THostServices::OpenProject(std::string_view fileName, bool newProjGroup) {
  return !fileName.empty() && Host().ReopenProject(fileName, newProjGroup);
}

rtl::TMainMenu* THostServices::GetMainMenu() {
  return &Host().MainMenu();
}

void THostServices::AddActionMenu(std::string_view name, rtl::TAction* action, rtl::TMenuItem* menuItem,
                                  bool insertAfter, bool insertAsChild) {
  rtl::Assert(action == nullptr, "This host knows no actions.");
  rtl::TMenuItem* const place = Host().MainMenu().FindItem(name);
  if (!place) throw EHostError("There is no menu item " + Quoted(name) + ".");
  if (insertAsChild) {
    place->Insert(insertAfter ? place->Count() : 0, *menuItem);
  } else {
    rtl::TMenuItem& parent = *place->Parent();
    parent.Insert(parent.IndexOf(*place) + (insertAfter ? 1 : 0), *menuItem);
  }
}

rtl::IFrontEnd* THostServices::GetFrontEnd() {
  return rtl::Application().HasFrontEnd() ? &rtl::Application().FrontEnd() : nullptr;
}

uint32_t THostServices::GetSourceCodePage() {
  return win::GetACP();
}

std::string THostServices::GetDriveFolder(char letter) {
  return win::ToHostName(std::string(1, letter) + ":\\");
}

void THostServices::ShowWaiting(bool waiting) {
  if (waiting) {
    qrl::StartWait();
  } else {
    qrl::StopWait();
  }
}

void THostServices::RunAdvanced(const toolsapi::TRunStep& step) {
  Host().NotifyRun(step);
}

void THostServices::RunWarning(std::string_view message) {
  Host().NotifyRunWarning(message);
}

void THostServices::RunConverted(const mig::TRunResult& result) {
  Host().NotifyRunConverted(result);
}

std::vector<std::string> THostServices::GetMissingFiles() {
  std::vector<std::string> lines;
  if (const TProject* const project = Host().ActiveProject()) {
    for (const TMissingFile& missing : project->Missing()) lines.push_back(missing.Message);
  }
  return lines;
}

bool THostServices::CanShowChanges() {
  return static_cast<bool>(Host().OnShowChanges);
}

void THostServices::ShowChanges() {
  if (CanShowChanges()) Host().OnShowChanges();
}

}  // namespace host
