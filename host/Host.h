// The stand-alone host: replaces the IDE for users who do not have one at hand.
//
//   host::THost host;                              // sets BorlandIDEServices
//   host.OpenProject("C:\\App\\App.dproj", true);
//   ... mig::TIDEUtils::GetProjectFileName() ...
//
// It holds a project group with its projects, the open units and a main menu, and implements the interfaces
// of toolsapi. It draws nothing: a front end, if there is one, observes it (THostObserver) and answers its
// questions. There is one host at a time, and all calls come from its thread. File names are full Windows
// paths in UTF-8.
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

// The user's answer for a modified buffer: save it, discard the changes, or cancel the operation.
enum class TSaveAnswer { Yes, No, Cancel };
// The user's answer before a buffer is saved over a newer file: save it, read the file and discard the
// changes of the buffer, or leave both as they are.
enum class TOverwriteAnswer { Overwrite, Reload, Cancel };

class THost {
 public:
  THost();
  // Closes everything without asking. Modules and services that clients still hold stay valid, without a
  // host.
  ~THost();
  THost(const THost&) = delete;
  THost& operator=(const THost&) = delete;

  // --- Projects. --- Opens a group, or a project in a group of its own. Unless `newGroup` is set, a project
  // is added to the open group and becomes the active one. Returns false if the open group could not be
  // closed. Raises EHostError or rtl::EFOpenError for files that cannot be used; the open group then stays
  // open. Missing units are reported, one line each (win/Diagnostics.h), and listed in TProject::Missing.
  [[nodiscard]] bool OpenProject(std::string_view fileName, bool newGroup);
  // The same for a client of the host that closed the group by its interface, as a restore does. If the
  // project was one of that group's, the whole group is opened again, with the project active.
  [[nodiscard]] bool ReopenProject(std::string_view fileName, bool newGroup);
  TProjectGroup* Group() const { return FGroup.Get(); }  // null if nothing is open
  TProject* ActiveProject() const { return FGroup ? FGroup->ActiveProject() : nullptr; }
  void SetActiveProject(TProject& project);  // one of the group's

  // --- Units. ---
  // Returns the module of the file, and opens it if necessary. Raises EHostError if there is no such file.
  TModule& OpenModule(std::string_view fileName);
  // Returns the open module that has this name or an editor of this file, or null.
  TModule* FindModule(std::string_view fileName) const;
  // The open units, in the order of opening.
  const std::vector<toolsapi::TIntf<TUnitModule>>& Units() const { return FUnits; }
  // Returns the projects of the group that list the file.
  std::vector<toolsapi::TIntf<toolsapi::IOTAProject>> OwnersOf(std::string_view fileName) const;
  // Reloads the module of the file, forms included, and discards changes in memory. Returns true if that
  // succeeded, or if the file exists and is not open.
  [[nodiscard]] bool ReloadFile(std::string_view fileName);

  // --- All modules: the group, its projects, the units, in this order. ---
  int ModuleCount() const;
  TModule& Module(int index) const;

  // --- The menu. It has "&File", "&Edit", "&Window" and "&Help" from the start. ---
  rtl::TMainMenu& MainMenu() { return FMainMenu; }

  // --- Wizards. --- Loads a module with a wizard's entry point and calls it. Raises EHostError if that fails
  // or the module refuses; none of its wizards is registered then.
  void LoadWizardModule(std::string_view fileName);

  // --- The front end. ---
  void AddObserver(THostObserver& observer);  // not owned
  void RemoveObserver(THostObserver& observer);
  // Called before a modified module is closed, or saved without force. Unset: Yes, so that nothing is lost.
  std::function<TSaveAnswer(TModule& module)> OnQuerySave;
  // Called before a buffer is saved over a file that another program has changed since it was loaded. Unset:
  // the file is not overwritten, and the reason is reported (win/Diagnostics.h).
  std::function<TOverwriteAnswer(TFileBuffer& buffer)> OnQueryOverwrite;
  // Called when the user wants to see the changes of the last run. Unset: this front end cannot show them.
  std::function<void()> OnShowChanges;

  // --- For the host's modules and services. ---
  TSaveAnswer QuerySave(TModule& module) const;
  void NotifyBufferChanged(TFileBuffer& buffer);
  void NotifyEditorShown(TFileEditor& editor);
  void NotifyRun(const toolsapi::TRunStep& step);
  void NotifyRunWarning(std::string_view message);
  void NotifyRunConverted(const mig::TRunResult& result);
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

  // Destroyed last, because the handlers of menu items may be code of these modules.
  std::vector<std::unique_ptr<TWizardModule>> FWizardModules;
  rtl::TMainMenu FMainMenu;
  std::vector<THostObserver*> FObservers;
  toolsapi::TIntf<toolsapi::IInterface> FServices;
  THostServices* FServicesObject;  // the object of FServices
  std::vector<toolsapi::TIntf<toolsapi::IOTAWizard>> FWizards;
  toolsapi::TIntf<TProjectGroup> FGroup;
  std::string FClosedGroup;  // the file of the group that was open last
  std::vector<toolsapi::TIntf<TUnitModule>> FUnits;
  std::unordered_map<std::string, TModule*> FByFile;  // by FileKey of the module's and its editors' files
};

}  // namespace host
