// The programming interface of the host, as far as the system uses it. Declarations only: host/ implements
// them for the stand-alone host.
//
// File names are full Windows paths, UTF-8. Indices count from 0, and an index that is out of range is a
// broken contract of the caller. Exceptions of the host pass through every operation. What an operation
// returns belongs to the caller as a counted reference; menu items and the main menu belong to the host.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "toolsapi/Interfaces.h"

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

// One of the files of a module, as something that can be shown: a source, a form.
class IOTAEditor : public IInterface {
 public:
  using TBase = IInterface;
  virtual std::string GetFileName() = 0;
  // Brings the editor to the front of its module.
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

// Something that the host has open: a unit with its form, a project, a project group.
class IOTAModule : public IInterface {
 public:
  using TBase = IInterface;
  virtual std::string GetFileName() = 0;
  virtual int GetModuleFileCount() = 0;
  virtual TIntf<IOTAEditor> GetModuleFileEditor(int index) = 0;
  // The projects that the module belongs to.
  virtual int GetOwnerCount() = 0;
  virtual TIntf<IOTAProject> GetOwner(int index) = 0;
  // True when everything of the module is on disk as the user sees it. `changeName` asks for a new name
  // first; `forceSave` saves without a question.
  [[nodiscard]] virtual bool Save(bool changeName, bool forceSave) = 0;
  // True when the host holds nothing of the module any more.
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

// GetModuleCount and GetModule tell the project's entries, in the project's order.
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
  virtual TIntf<IOTAProject> GetActiveProject() = 0;  // nothing in a group without one

 protected:
  ~IOTAProjectGroup() = default;
};

// What the host has open: its project group, projects and units.
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
  // Drops the host's copy of a file and takes it from disk.
  virtual bool ReloadFile(std::string_view fileName) = 0;
  // `newProjGroup` closes the group that is open first; otherwise the project joins it.
  virtual bool OpenProject(std::string_view fileName, bool newProjGroup) = 0;

 protected:
  ~IOTAActionServices() = default;
};

class INTAServices : public IInterface {
 public:
  using TBase = IInterface;
  virtual rtl::TMainMenu* GetMainMenu() = 0;
  // Puts `menuItem`, which the main menu owns, next to the item of component name `name`, or with
  // `insertAsChild` below it: behind it or at the end with `insertAfter`, before it or at the beginning
  // without. `action` may be null.
  virtual void AddActionMenu(std::string_view name, rtl::TAction* action, rtl::TMenuItem* menuItem,
                             bool insertAfter, bool insertAsChild) = 0;

 protected:
  ~INTAServices() = default;
};

// --- Identities. IOTANotifier, IOTAModule, IOTAModuleInfo and IOTAProject are never cast to and need none.
// ---
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

// The host's services, nothing until the host has given them. Every program and every loadable module has a
// variable of its own (hence the visibility): a module's entry point sets it from its first argument.
[[gnu::visibility("hidden")]] inline TIntf<IInterface> BorlandIDEServices;

// --- The entry of a loadable module. The host calls the exported function of this name once, after loading.
// ---
inline constexpr char kWizardEntryPoint[] = "INITWIZARD0001";
using TWizardRegisterProc = void (*)(const TIntf<IOTAWizard>& wizard);
using TWizardTerminateProc = void (*)();
// The host's services, how to register a wizard, and a place for what the host calls before it unloads the
// module (null unless the module sets it). False refuses to be loaded.
using TWizardInitProc = bool (*)(const TIntf<IInterface>& services, TWizardRegisterProc registerProc,
                                 TWizardTerminateProc* terminate);

}  // namespace toolsapi
