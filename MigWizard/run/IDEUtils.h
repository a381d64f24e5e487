// The interface to the host, for everything else in the system: the project, its files and the menu. No other
// part uses the host's interfaces.
//
// Nothing is cached: every call asks the host again, and the active project may have changed. File names are
// full Windows paths in UTF-8. Exceptions of the host pass through. Raises rtl::EInvalidCast if the host's
// services lack an interface that an operation needs. All calls must be made on the host's main thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "qrl/QrlMenu.h"
#include "rtl/forms/Menus.h"
#include "toolsapi/ToolsAPI.h"

namespace mig {

class TIDEUtils {
 public:
  TIDEUtils() = delete;

  // --- The active project. ---
  static std::string GetProjectFileName();  // empty if there is no project
  static int GetModuleCount();              // 0 if there is no project
  // Returns the file of a module of any kind; may be empty. `index` counts from 0, in the project's order.
  static std::string GetModuleFileName(int index);
  // Returns True if the host saved the project, so that the files on disk are up to date. False without a
  // project.
  [[nodiscard]] static bool SaveProject();
  static toolsapi::TIntf<toolsapi::IOTAProject> GetActiveProject();  // may be null

  // Returns the files that the project lists and that do not exist, a line for the user each. Empty if the
  // host cannot tell.
  static std::vector<std::string> GetMissingFiles();

  // --- The changes of a run. ---
  // Returns True if the host can show them.
  static bool CanShowChanges();
  // Shows them when the run has ended, or does nothing.
  static void ShowChanges();

  // --- Open files. The results of the first three may be ignored. ---
  // Returns True if the host closed the group or has none; it has no file of the project open then.
  static bool CloseProjectGroup();
  // Opens the project as a group of its own. `fileName` may be empty.
  static bool OpenProject(std::string_view fileName);
  // Makes the host discard its copy of the file and read it from disk.
  static bool ReloadFile(std::string_view fileName);
  // Returns the first open module that is a project group, or null if there is none or no host.
  static toolsapi::TIntf<toolsapi::IOTAProjectGroup> GetProjectGroup();

  // --- The host's services. Raise rtl::EInvalidCast without a host. ---
  static toolsapi::TIntf<toolsapi::IOTAModuleServices> GetModuleServices();
  static toolsapi::TIntf<toolsapi::IOTAActionServices> GetActionServices();

  // Adds an item with `caption`, component name `name` and handler `onClick` to the product's top-level menu
  // `menu`. Creates that menu before the last top-level item if the product has none; otherwise sets its
  // caption.
  static void AddExpertMenuItem(const qrl::TProductMenu& menu, std::string_view caption,
                                std::string_view name, rtl::TMenuItem::TClickEvent onClick);
};

}  // namespace mig
