// The stand-alone host: what takes the IDE's place for users who have none at hand.
//
//   host::THost host;                              // from here on BorlandIDEServices is there
//   host.OpenProject("C:\\App\\App.dproj", true);
//   ... mig::TIDEUtils::GetProjectFileName() ...
//
// It holds a project group with its projects, the units that are open, and a main menu, and answers the
// interfaces of toolsapi. It draws nothing: a front end watches it through THostObserver and answers its
// questions; without one it works just as well. There is one host at a time, and all calls come from its
// thread. File names are full Windows paths, UTF-8.
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/HostObserver.h"
#include "host/Modules.h"
#include "host/Project.h"
#include "host/WizardModule.h"
#include "rtl/forms/Menus.h"
#include "toolsapi/ToolsAPI.h"

namespace host {

class THostServices;

// The user's word on a modified buffer: save it, drop the changes, or go back.
enum class TSaveAnswer { Yes, No, Cancel };

class THost {
 public:
  THost();
  // Closes everything without a question. Modules and services that clients still hold are cut off, not
  // destroyed.
  ~THost();
  THost(const THost&) = delete;
  THost& operator=(const THost&) = delete;

  // --- Projects. ---
  // Opens a group file, or a project in a group of its own; with `newGroup` False a project joins the open
  // group and becomes the active one. False when what is open could not be closed. Whatever is wrong with the
  // files raises EHostError or rtl::EFOpenError, and what was open stays so. Missing units are told, a
  // line each.
  [[nodiscard]] bool OpenProject(std::string_view fileName, bool newGroup);
  TProjectGroup* Group() const { return FGroup.Get(); }  // null when nothing is open
  TProject* ActiveProject() const { return FGroup ? FGroup->ActiveProject() : nullptr; }
  void SetActiveProject(TProject& project);  // one of the group's

  // --- Units. ---
  // The module of the file, opened if it was not. Raises EHostError for a file that is not there.
  TModule& OpenModule(std::string_view fileName);
  // The open module that has an editor of this file, or bears its name; or null.
  TModule* FindModule(std::string_view fileName) const;
  const std::vector<toolsapi::TIntf<TUnitModule>>& Units() const {
    return FUnits;
  }  // in the order of opening
  // The group's projects that list the file.
  std::vector<toolsapi::TIntf<toolsapi::IOTAProject>> OwnersOf(std::string_view fileName) const;
  // Drops the copy of the file's module, forms included, and takes it from disk. True when that could be
  // done, or the file exists and is not open.
  [[nodiscard]] bool ReloadFile(std::string_view fileName);

  // --- All modules: the group, its projects, the units, in this order. ---
  int ModuleCount() const;
  TModule& Module(int index) const;

  // --- The menu, with "&File", "&Window" and "&Help" from the beginning. ---
  rtl::TMainMenu& MainMenu() { return FMainMenu; }

  // --- Wizards. ---
  // Loads a module with a wizard's entry point and calls it. Raises EHostError when that cannot be done or
  // the module refuses; none of its wizards is registered then.
  void LoadWizardModule(std::string_view fileName);
  const std::vector<toolsapi::TIntf<toolsapi::IOTAWizard>>& Wizards() const { return FWizards; }

  // --- The front end. ---
  void AddObserver(THostObserver& observer);  // not owned
  void RemoveObserver(THostObserver& observer);
  // Asked before a modified module is closed, or saved without force. Unset: Yes, so that nothing is lost.
  std::function<TSaveAnswer(TModule& module)> OnQuerySave;

  // --- For the host's modules and services. ---
  TSaveAnswer QuerySave(TModule& module) const;
  void NotifyBufferChanged(TFileBuffer& buffer);
  void NotifyEditorShown(TFileEditor& editor);
  void NotifyRun(const toolsapi::TRunStep& step);
  void NotifyRunWarning(std::string_view message);
  void RemoveUnits(const std::vector<TUnitModule*>& units);
  void RemoveProject(TProject& project);
  void RemoveGroup();

 private:
  static void RegisterWizard(const toolsapi::TIntf<toolsapi::IOTAWizard>& wizard);
  void Install(std::string_view groupFile, std::vector<TProjectFile> projects);
  void AddProject(TProjectFile file);
  void EnterFiles(TModule& module);
  void ForgetFiles(const TModule& module);
  void Notify(const std::function<void(THostObserver&)>& call);

  // Destroyed last: menu items may have their code in these.
  std::vector<std::unique_ptr<TWizardModule>> FWizardModules;
  rtl::TMainMenu FMainMenu;
  std::vector<THostObserver*> FObservers;
  toolsapi::TIntf<toolsapi::IInterface> FServices;
  THostServices* FServicesObject;  // behind FServices
  std::vector<toolsapi::TIntf<toolsapi::IOTAWizard>> FWizards;
  toolsapi::TIntf<TProjectGroup> FGroup;
  std::vector<toolsapi::TIntf<TUnitModule>> FUnits;
  std::unordered_map<std::string, TModule*> FByFile;  // by FileKey of the module's and its editors' files
};

}  // namespace host
