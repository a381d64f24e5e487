#include "MigWizard/run/IDEUtils.h"

#include <string>
#include <utility>

#include "rtl/text/SysUtils.h"
#include "toolsapi/HostRuntime.h"

namespace mig {

using toolsapi::BorlandIDEServices;
using toolsapi::CastTo;
using toolsapi::IHostRuntime;
using toolsapi::INTAServices;
using toolsapi::IOTAActionServices;
using toolsapi::IOTAModuleServices;
using toolsapi::IOTAProject;
using toolsapi::IOTAProjectGroup;
using toolsapi::Supports;
using toolsapi::TIntf;

std::string TIDEUtils::GetProjectFileName() {
  const TIntf<IOTAProject> project = GetActiveProject();
  return project ? project->GetFileName() : std::string();
}

int TIDEUtils::GetModuleCount() {
  const TIntf<IOTAProject> project = GetActiveProject();
  return project ? project->GetModuleCount() : 0;
}

std::string TIDEUtils::GetModuleFileName(int index) {
  const TIntf<IOTAProject> project = GetActiveProject();
  return project ? project->GetModule(index)->GetFileName() : std::string();
}

bool TIDEUtils::SaveProject() {
  const TIntf<IOTAProject> project = GetActiveProject();
  return project && project->Save(/*changeName=*/false, /*forceSave=*/true);
}

TIntf<IOTAProject> TIDEUtils::GetActiveProject() {
  const TIntf<IOTAProjectGroup> group = GetProjectGroup();
  return group ? group->GetActiveProject() : nullptr;
}

bool TIDEUtils::CloseProjectGroup() {
  const TIntf<IOTAProjectGroup> group = GetProjectGroup();
  return group ? group->Close() : true;
}

bool TIDEUtils::OpenProject(std::string_view fileName) {
  return GetActionServices()->OpenProject(fileName, /*newProjGroup=*/true);
}

bool TIDEUtils::ReloadFile(std::string_view fileName) {
  return GetActionServices()->ReloadFile(fileName);
}

std::vector<std::string> TIDEUtils::GetMissingFiles() {
  const TIntf<IHostRuntime> host = Supports<IHostRuntime>(BorlandIDEServices);
  return host ? host->GetMissingFiles() : std::vector<std::string>();
}

bool TIDEUtils::CanShowChanges() {
  const TIntf<IHostRuntime> host = Supports<IHostRuntime>(BorlandIDEServices);
  return host && host->CanShowChanges();
}

void TIDEUtils::ShowChanges() {
  if (const TIntf<IHostRuntime> host = Supports<IHostRuntime>(BorlandIDEServices)) host->ShowChanges();
}

TIntf<IOTAProjectGroup> TIDEUtils::GetProjectGroup() {
  if (!BorlandIDEServices) return nullptr;
  const TIntf<IOTAModuleServices> services = GetModuleServices();
  const int count = services->GetModuleCount();
  for (int i = 0; i < count; ++i) {
    if (TIntf<IOTAProjectGroup> group = Supports<IOTAProjectGroup>(services->GetModule(i))) return group;
  }
  return nullptr;
}

TIntf<IOTAModuleServices> TIDEUtils::GetModuleServices() {
  return CastTo<IOTAModuleServices>(BorlandIDEServices);
}

TIntf<IOTAActionServices> TIDEUtils::GetActionServices() {
  return CastTo<IOTAActionServices>(BorlandIDEServices);
}

namespace {

std::string ComparableCaption(std::string_view caption) {
  return rtl::UpperCase(qrl::RemoveAmpersands(caption));
}

// The result of a walk over the top-level items, up to and including the product's own.
struct TTopLevel {
  rtl::TMenuItem* Own = nullptr;
  bool IsCaptionTaken = false;
};

TTopLevel WalkTopLevel(const rtl::TMenuItem& items, const qrl::TProductMenu& menu) {
  TTopLevel found;
  const std::string caption = ComparableCaption(menu.MenuCaption);
  for (int i = 0; i < items.Count(); ++i) {
    rtl::TMenuItem& item = items[i];
    if (item.Name() == menu.MenuName) {
      found.Own = &item;
      break;
    }
    if (!menu.AlternateCaption.empty() && ComparableCaption(item.Caption()) == caption)
      found.IsCaptionTaken = true;
  }
  return found;
}

// Creates an item of the main menu: as the last child of `parent` or, if that is null, before the top-level
// item at `index`.
rtl::TMenuItem& CreateMenuItem(INTAServices& services, std::string_view caption, std::string_view name,
                               int index, rtl::TMenuItem::TClickEvent onClick, const rtl::TMenuItem* parent) {
  rtl::TMainMenu& mainMenu = *services.GetMainMenu();
  rtl::TMenuItem& item = mainMenu.NewItem();
  item.SetName(name);
  item.SetCaption(caption);
  item.SetOnClick(std::move(onClick));
  if (parent) {
    services.AddActionMenu(parent->Name(), nullptr, &item, /*insertAfter=*/true, /*insertAsChild=*/true);
  } else {
    services.AddActionMenu(mainMenu.Items()[index].Name(), nullptr, &item, /*insertAfter=*/false,
                           /*insertAsChild=*/false);
  }
  return item;
}

}  // namespace

void TIDEUtils::AddExpertMenuItem(const qrl::TProductMenu& menu, std::string_view caption,
                                  std::string_view name, rtl::TMenuItem::TClickEvent onClick) {
  const TIntf<INTAServices> services = CastTo<INTAServices>(BorlandIDEServices);
  const rtl::TMenuItem& items = services->GetMainMenu()->Items();

  const TTopLevel found = WalkTopLevel(items, menu);
  const std::string& topCaption = found.IsCaptionTaken ? menu.AlternateCaption : menu.MenuCaption;
  rtl::TMenuItem* top = found.Own;
  if (top) {
    top->SetCaption(topCaption);
  } else {
    top = &CreateMenuItem(*services, topCaption, menu.MenuName, items.Count() - 1, nullptr, nullptr);
  }
  CreateMenuItem(*services, caption, name, 0, std::move(onClick), top);
}

}  // namespace mig
