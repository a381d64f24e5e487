// The system's door to its host: the one place that knows the host's interfaces. The rest asks here for the
// project, its files and the menu.
//
// Nothing is kept between two calls: each one asks the host anew, and the active project may be another one
// each time. File names are full Windows paths, UTF-8. Exceptions of the host pass through; so does
// rtl::EInvalidCast, raised when the host's services lack an interface that an operation needs. All calls
// come from the host's main thread.
#pragma once

#include <string>
#include <string_view>

#include "qrl/QrlMenu.h"
#include "rtl/forms/Menus.h"
#include "toolsapi/ToolsAPI.h"

namespace mig {

class TIDEUtils {
 public:
  TIDEUtils() = delete;

  // --- The active project. ---
  static std::string GetProjectFileName();  // empty without a project: everywhere the test for that
  static int GetModuleCount();              // 0 without a project
  static std::string GetModuleFileName(
      int index);  // from 0, in the project's order; modules of every kind, may be empty
  // True when the host saved the project: the files on disk are what the user sees. False without a project.
  [[nodiscard]] static bool SaveProject();
  static toolsapi::TIntf<toolsapi::IOTAProject> GetActiveProject();  // or nothing

  // --- What is open. The results of these three are the host's word, and nobody has to look at them. ---
  // True when the host closed the group, or has none: it then holds none of the project's files.
  static bool CloseProjectGroup();
  // Opens the project as a group of its own. The call is made with an empty name too.
  static bool OpenProject(std::string_view fileName);
  // The host drops its copy of the file and takes the one on disk.
  static bool ReloadFile(std::string_view fileName);
  // The first open module that is a project group, or nothing; nothing also without a host.
  static toolsapi::TIntf<toolsapi::IOTAProjectGroup> GetProjectGroup();

  // --- The host's services; these raise rtl::EInvalidCast without a host. ---
  static toolsapi::TIntf<toolsapi::IOTAModuleServices> GetModuleServices();
  static toolsapi::TIntf<toolsapi::IOTAActionServices> GetActionServices();

  // Puts an item with `caption`, component name `name` and handler `onClick` into the product's top-level
  // menu `menu`, and makes that menu, before the last top-level item, where the product has not done so. The
  // caption of an existing one is set anew.
  static void AddExpertMenuItem(const qrl::TProductMenu& menu, std::string_view caption,
                                std::string_view name, rtl::TMenuItem::TClickEvent onClick);
};

}  // namespace mig
