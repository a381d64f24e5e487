#include "host/Host.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/GroupFile.h"
#include "host/HostError.h"
#include "host/HostServices.h"
#include "rtl/text/SysUtils.h"
#include "win/Diagnostics.h"
#include "win/paths/Drives.h"

namespace host {

using toolsapi::BorlandIDEServices;
using toolsapi::IOTAProject;
using toolsapi::MakeIntf;
using toolsapi::TIntf;

namespace {

// The host that BorlandIDEServices belongs to. The entry point of a module registers its wizard there.
THost* CurrentHost = nullptr;

struct TTopItem {
  const char* Name;
  const char* Caption;
};
constexpr std::array<TTopItem, 4> kTopItems = {{
    {"FileMenu", "&File"},
    {"EditMenu", "&Edit"},
    {"WindowMenu", "&Window"},
    {"HelpMenu", "&Help"},
}};

// Returns whether the group file `group` exists and lists the project.
bool Lists(const std::string& group, std::string_view project) {
  if (group.empty() || !rtl::FileExists(group)) return false;
  try {
    const std::vector<std::string> projects = ReadGroupFile(group).Projects;
    return std::any_of(projects.begin(), projects.end(),
                       [&](const std::string& listed) { return FileKey(listed) == FileKey(project); });
  } catch (const EHostError&) {
    return false;  // the project can be opened without its group
  }
}

}  // namespace

THost::THost() {
  rtl::Assert(CurrentHost == nullptr, "There is a host already.");
  for (const TTopItem& top : kTopItems) {
    rtl::TMenuItem& item = FMainMenu.NewItem();
    item.SetName(top.Name);
    item.SetCaption(top.Caption);
    FMainMenu.Items().Insert(FMainMenu.Items().Count(), item);
  }
  FMainMenu.OnChange = [this] { Notify([](THostObserver& observer) { observer.MenuChanged(); }); };
  const TIntf<THostServices> services = MakeIntf<THostServices>(*this);
  FServicesObject = services.Get();
  FServices = TIntf<toolsapi::IOTAModuleServices>(services);
  CurrentHost = this;
  BorlandIDEServices = FServices;
}

THost::~THost() {
  // Nothing here allocates memory.
  for (const TIntf<TUnitModule>& unit : FUnits) unit->Detach();
  if (FGroup) {
    for (int i = 0; i < FGroup->Count(); ++i) (*FGroup)[i].Detach();
    FGroup->Detach();
  }
  FUnits.clear();
  FGroup = nullptr;
  FWizards.clear();
  if (BorlandIDEServices == FServices) BorlandIDEServices = nullptr;
  FServicesObject->Disconnect();
  CurrentHost = nullptr;
}

// --- Projects ---

bool THost::OpenProject(std::string_view name, bool newGroup) {
  // Names in the project are relative to its folder, so its path must be full.
  std::string fileName = win::ToWindowsPath(name);
  if (fileName.empty()) fileName = name;
  const bool isGroup = IsGroupKind(ProjectKindOf(fileName));
  TGroupFile group;
  if (isGroup) {
    group = ReadGroupFile(fileName);
  } else {
    group.Projects.push_back(fileName);
  }
  std::vector<TProjectFile> projects;
  for (const std::string& project : group.Projects) projects.push_back(ReadProjectFile(project));
  for (const std::string& line : group.PassedOver) win::Diagnose(line);

  if (newGroup || isGroup || !FGroup) {
    if (FGroup && !TIntf<TProjectGroup>(FGroup)->TModule::Close()) return false;
    Install(group.FileName, std::move(projects));
  } else {
    AddProject(std::move(projects.front()));
  }
  return true;
}

bool THost::ReopenProject(std::string_view fileName, bool newGroup) {
  const std::string group = FGroup ? std::string() : FClosedGroup;
  return Lists(group, fileName) ? OpenProject(group, true) && OpenProject(fileName, false)
                                : OpenProject(fileName, newGroup);
}

void THost::Install(std::string_view groupFile, std::vector<TProjectFile> projects) {
  FGroup = MakeIntf<TProjectGroup>(*this, groupFile);
  for (TProjectFile& file : projects) {
    for (const TMissingFile& missing : file.Missing) win::Diagnose(missing.Message);
    const TIntf<TProject> project = MakeIntf<TProject>(*this, std::move(file));
    EnterFiles(*project);
    FGroup->Add(project);
  }
  Notify([](THostObserver& observer) { observer.ProjectOpened(); });
}

void THost::AddProject(TProjectFile file) {
  TModule* const open = FindModule(file.FileName);
  for (int i = 0; i < FGroup->Count(); ++i) {
    if (&(*FGroup)[i] == open) return SetActiveProject((*FGroup)[i]);
  }
  for (const TMissingFile& missing : file.Missing) win::Diagnose(missing.Message);
  const TIntf<TProject> project = MakeIntf<TProject>(*this, std::move(file));
  EnterFiles(*project);
  FGroup->Add(project);
  Notify([](THostObserver& observer) { observer.ProjectOpened(); });
  SetActiveProject(*project);
}

void THost::SetActiveProject(TProject& project) {
  if (FGroup->FActive == &project) return;
  FGroup->FActive = &project;
  Notify([](THostObserver& observer) { observer.ActiveProjectChanged(); });
}

void THost::RemoveProject(TProject& project) {
  std::vector<TUnitModule*> units;
  for (const TIntf<TUnitModule>& unit : FUnits) {
    if (project.Lists(unit->FileName()) && unit->GetOwnerCount() == 1) units.push_back(unit.Get());
  }
  RemoveUnits(units);
  const bool wasActive = FGroup->FActive == &project;
  ForgetFiles(project);
  project.Detach();
  FGroup->Remove(project);
  Notify([](THostObserver& observer) { observer.ProjectClosed(); });
  if (wasActive) Notify([](THostObserver& observer) { observer.ActiveProjectChanged(); });
}

void THost::RemoveGroup() {
  if (!FGroup) return;
  std::vector<TUnitModule*> units;
  for (const TIntf<TUnitModule>& unit : FUnits) {
    if (unit->GetOwnerCount() > 0) units.push_back(unit.Get());
  }
  RemoveUnits(units);
  const TIntf<TProjectGroup> group = std::exchange(FGroup, nullptr);
  FClosedGroup = group->FileName();
  for (int i = 0; i < group->Count(); ++i) {
    ForgetFiles((*group)[i]);
    (*group)[i].Detach();
  }
  group->Detach();
  Notify([](THostObserver& observer) { observer.ProjectClosed(); });
}

// --- Units ---

TModule& THost::OpenModule(std::string_view fileName) {
  if (TModule* const open = FindModule(fileName)) return *open;
  if (!rtl::FileExists(fileName)) throw EHostError(At(fileName, 0, "this file does not exist."));
  TUnitModule& unit = *FUnits.emplace_back(MakeIntf<TUnitModule>(*this, fileName));
  EnterFiles(unit);
  Notify([&](THostObserver& observer) { observer.ModuleOpened(unit); });
  return unit;
}

TModule* THost::FindModule(std::string_view fileName) const {
  const auto found = FByFile.find(FileKey(fileName));
  return found == FByFile.end() ? nullptr : found->second;
}

std::vector<TIntf<IOTAProject>> THost::OwnersOf(std::string_view fileName) const {
  std::vector<TIntf<IOTAProject>> owners;
  const std::string key = FileKey(fileName);
  for (int i = 0; FGroup && i < FGroup->Count(); ++i) {
    if ((*FGroup)[i].ListsKey(key)) owners.emplace_back(&(*FGroup)[i]);
  }
  return owners;
}

bool THost::ReloadFile(std::string_view fileName) {
  TModule* const module = FindModule(fileName);
  return module ? module->Reload() : rtl::FileExists(fileName);
}

void THost::RemoveUnits(const std::vector<TUnitModule*>& units) {
  std::vector<TIntf<TUnitModule>> removed;
  for (TUnitModule* const unit : units) {
    removed.emplace_back(unit);
    ForgetFiles(*unit);
    unit->Detach();
  }
  std::erase_if(FUnits, [](const TIntf<TUnitModule>& unit) { return !unit->IsOpen(); });
  for (const TIntf<TUnitModule>& unit : removed) {
    Notify([&](THostObserver& observer) { observer.ModuleClosed(*unit); });
  }
}

void THost::EnterFiles(TModule& module) {
  FByFile.try_emplace(FileKey(module.FileName()), &module);
  for (int i = 0; i < module.EditorCount(); ++i) {
    FByFile.try_emplace(FileKey(module.Editor(i).Buffer().FileName()), &module);
  }
}

void THost::ForgetFiles(const TModule& module) {
  const auto forget = [&](std::string_view fileName) {
    const auto found = FByFile.find(FileKey(fileName));
    if (found != FByFile.end() && found->second == &module) FByFile.erase(found);
  };
  forget(module.FileName());
  for (int i = 0; i < module.EditorCount(); ++i) forget(module.Editor(i).Buffer().FileName());
}

// --- All modules ---

int THost::ModuleCount() const {
  const int projects = FGroup ? 1 + FGroup->Count() : 0;
  return projects + static_cast<int>(FUnits.size());
}

TModule& THost::Module(int index) const {
  if (FGroup) {
    if (index == 0) return *FGroup;
    if (index <= FGroup->Count()) return (*FGroup)[index - 1];
    index -= 1 + FGroup->Count();
  }
  return *FUnits.at(static_cast<size_t>(index));
}

// --- Wizards ---

void THost::RegisterWizard(const TIntf<toolsapi::IOTAWizard>& wizard) {
  CurrentHost->FWizards.push_back(wizard);
}

void THost::LoadWizardModule(std::string_view fileName) {
  // The module stays loaded even if it refuses, because the menu may already hold handlers of it.
  TWizardModule& module = *FWizardModules.emplace_back(std::make_unique<TWizardModule>(fileName));
  const size_t before = FWizards.size();
  if (module.Init(FServices, &THost::RegisterWizard)) return;
  FWizards.resize(before);
  throw EHostError(At(fileName, 0, "this wizard refused to be loaded."));
}

// --- The front end ---

void THost::AddObserver(THostObserver& observer) {
  FObservers.push_back(&observer);
}

void THost::RemoveObserver(THostObserver& observer) {
  std::erase(FObservers, &observer);
}

TSaveAnswer THost::QuerySave(TModule& module) const {
  return OnQuerySave ? OnQuerySave(module) : TSaveAnswer::Yes;
}

void THost::NotifyBufferChanged(TFileBuffer& buffer) {
  Notify([&](THostObserver& observer) { observer.BufferChanged(buffer); });
}

void THost::NotifyEditorShown(TFileEditor& editor) {
  Notify([&](THostObserver& observer) { observer.EditorShown(editor); });
}

void THost::NotifyRun(const toolsapi::TRunStep& step) {
  Notify([&](THostObserver& observer) { observer.RunAdvanced(step); });
}

void THost::NotifyRunWarning(std::string_view message) {
  Notify([&](THostObserver& observer) { observer.RunWarning(message); });
}

void THost::NotifyRunConverted(const mig::TRunResult& result) {
  Notify([&](THostObserver& observer) { observer.RunConverted(result); });
}

void THost::Notify(const std::function<void(THostObserver&)>& call) {
  for (THostObserver* const observer : FObservers) call(*observer);
}

}  // namespace host
