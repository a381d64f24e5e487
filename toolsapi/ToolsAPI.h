// The part of the host's programming interface that the system uses. Declarations only; host/ implements them
// for the stand-alone host.
//
// File names are full Windows paths in UTF-8. Indices count from 0 and must be in range. Exceptions of the
// host pass through every operation. A returned interface is a counted reference that the caller owns; the
// host owns the main menu and its items.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "toolsapi/Interfaces.h"
#include "toolsapi/Module.h"

namespace rtl {
class TAction;
class TMainMenu;
class TMenuItem;
}  // namespace rtl

namespace toolsapi {

class IOTANotifier : public IInterface {
 public:
  using TBase = IInterface;
  virtual void AfterSave() = 0;
  virtual void BeforeSave() = 0;
  virtual void Destroyed() = 0;
  virtual void Modified() = 0;

 protected:
  ~IOTANotifier() = default;
};

// A set: the sum of its elements.
using TWizardState = uint8_t;
inline constexpr TWizardState wsEnabled = 1;
inline constexpr TWizardState wsChecked = 2;

class IOTAWizard : public IOTANotifier {
 public:
  using TBase = IOTANotifier;
  virtual std::string GetIDString() = 0;
  virtual std::string GetName() = 0;
  virtual TWizardState GetState() = 0;
  virtual void Execute() = 0;

 protected:
  ~IOTAWizard() = default;
};

// A view of one file of a module, its source or its form.
class IOTAEditor : public IInterface {
 public:
  using TBase = IInterface;
  virtual std::string GetFileName() = 0;
  // Shows the editor as the active view of its module.
  virtual void Show() = 0;

 protected:
  ~IOTAEditor() = default;
};

class IOTASourceEditor : public IOTAEditor {
 public:
  using TBase = IOTAEditor;

 protected:
  ~IOTASourceEditor() = default;
};

class IOTAProject;

// An open unit with its form, an open project or an open project group.
class IOTAModule : public IInterface {
 public:
  using TBase = IInterface;
  virtual std::string GetFileName() = 0;
  virtual int GetModuleFileCount() = 0;
  virtual TIntf<IOTAEditor> GetModuleFileEditor(int index) = 0;
  // The projects that the module belongs to.
  virtual int GetOwnerCount() = 0;
  virtual TIntf<IOTAProject> GetOwner(int index) = 0;
  // Saves the module. Returns True if all its files on disk are up to date. `changeName` asks for a new name
  // first; `forceSave` saves without asking.
  [[nodiscard]] virtual bool Save(bool changeName, bool forceSave) = 0;
  // Closes the module. Returns False if it stays open.
  virtual bool Close() = 0;

 protected:
  ~IOTAModule() = default;
};

// An entry of a project, open or not.
class IOTAModuleInfo : public IInterface {
 public:
  using TBase = IInterface;
  virtual std::string GetFileName() = 0;  // may be empty

 protected:
  ~IOTAModuleInfo() = default;
};

// GetModuleCount and GetModule list the entries in the project's order.
class IOTAProject : public IOTAModule {
 public:
  using TBase = IOTAModule;
  virtual int GetModuleCount() = 0;
  virtual TIntf<IOTAModuleInfo> GetModule(int index) = 0;

 protected:
  ~IOTAProject() = default;
};

class IOTAProjectGroup : public IOTAModule {
 public:
  using TBase = IOTAModule;
  virtual TIntf<IOTAProject> GetActiveProject() = 0;  // null in a group without an active project

 protected:
  ~IOTAProjectGroup() = default;
};

// The open project group, projects and units.
class IOTAModuleServices : public IInterface {
 public:
  using TBase = IInterface;
  virtual int GetModuleCount() = 0;
  virtual TIntf<IOTAModule> GetModule(int index) = 0;

 protected:
  ~IOTAModuleServices() = default;
};

class IOTAActionServices : public IInterface {
 public:
  using TBase = IInterface;
  // Discards the host's copy of a file and reads the file again.
  virtual bool ReloadFile(std::string_view fileName) = 0;
  // Closes the open group first if `newProjGroup` is True; otherwise adds the project to it.
  virtual bool OpenProject(std::string_view fileName, bool newProjGroup) = 0;

 protected:
  ~IOTAActionServices() = default;
};

class INTAServices : public IInterface {
 public:
  using TBase = IInterface;
  virtual rtl::TMainMenu* GetMainMenu() = 0;
  // Inserts `menuItem`, which the main menu owns from then on. With `insertAsChild` it becomes the last or
  // first child of the item of component name `name`, otherwise the sibling after or before it, as
  // `insertAfter` says. `action` may be null.
  virtual void AddActionMenu(std::string_view name, rtl::TAction* action, rtl::TMenuItem* menuItem,
                             bool insertAfter, bool insertAsChild) = 0;

 protected:
  ~INTAServices() = default;
};

// --- Identities ---
// IOTANotifier, IOTAModule, IOTAModuleInfo and IOTAProject have none, because no cast to them is needed.
template <>
inline constexpr TInterfaceId kIdOf<IOTAModuleServices>{"IOTAModuleServices",
                                                        TGuid("{55A5E848-27FB-4880-8E7C-7F05A9802482}")};
template <>
inline constexpr TInterfaceId kIdOf<IOTAActionServices>{"IOTAActionServices",
                                                        TGuid("{F17A7BC9-E07D-11D1-AB0B-00C04FB16FB3}")};
template <>
inline constexpr TInterfaceId kIdOf<INTAServices>{"INTAServices",
                                                  TGuid("{89160C3A-8EF4-4D2E-8FD5-D8492F61DB3E}")};
template <>
inline constexpr TInterfaceId kIdOf<IOTAProjectGroup>{"IOTAProjectGroup",
                                                      TGuid("{F17A7BCB-E07D-11D1-AB0B-00C04FB16FB3}")};
template <>
inline constexpr TInterfaceId kIdOf<IOTAEditor>{"IOTAEditor",
                                                TGuid("{F17A7BD0-E07D-11D1-AB0B-00C04FB16FB3}")};
template <>
inline constexpr TInterfaceId kIdOf<IOTASourceEditor>{"IOTASourceEditor",
                                                      TGuid("{5D965803-8147-4D32-B8C5-712F6DDCF98E}")};
template <>
inline constexpr TInterfaceId kIdOf<IOTAWizard>{"IOTAWizard",
                                                TGuid("{B75C0CE0-EEA6-11D1-9504-00608CCBF153}")};

// The host's services; null until the host has passed them. Hidden, so that every program and every loadable
// module has its own variable. A module's entry point sets it from its first argument.
KVA_INTERNAL inline TIntf<IInterface> BorlandIDEServices;

// --- The entry point of a loadable module ---
// The host calls the exported function of this name once, after it has loaded the module.
inline constexpr char kWizardEntryPoint[] = "INITWIZARD0001";
using TWizardRegisterProc = void (*)(const TIntf<IOTAWizard>& wizard);
using TWizardTerminateProc = void (*)();
// `services` are those of the host, and `registerProc` registers a wizard. The module may set `*terminate` to
// a function that the host calls before it unloads the module. Returns False to refuse to be loaded.
using TWizardInitProc = bool (*)(const TIntf<IInterface>& services, TWizardRegisterProc registerProc,
                                 TWizardTerminateProc* terminate);

}  // namespace toolsapi
