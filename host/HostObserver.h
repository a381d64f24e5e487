// What a view of the host is told. Each call comes after the change, on the main thread, and from within the
// operation that made it: an observer looks, and changes nothing of the host.
#pragma once

#include <string_view>

namespace toolsapi {
struct TRunStep;
}

namespace host {

class TFileBuffer;
class TFileEditor;
class TModule;

class THostObserver {
 public:
  virtual ~THostObserver() = default;

  virtual void ProjectOpened() {}  // a group or a project was opened; everything of it is there
  virtual void ProjectClosed() {}  // the same, gone
  virtual void ActiveProjectChanged() {}
  virtual void ModuleOpened(TModule& module) { static_cast<void>(module); }  // a unit
  virtual void ModuleClosed(TModule& module) { static_cast<void>(module); }  // a unit, still alive
  virtual void BufferChanged(TFileBuffer& buffer) {
    static_cast<void>(buffer);
  }  // its bytes, or whether it is modified
  virtual void EditorShown(TFileEditor& editor) { static_cast<void>(editor); }  // bring it to the front
  virtual void MenuChanged() {}
  // A wizard of a loaded module is at work. This one call may end what goes on, by an exception.
  virtual void RunAdvanced(const toolsapi::TRunStep& step) { static_cast<void>(step); }
  virtual void RunWarning(std::string_view message) { static_cast<void>(message); }
};

}  // namespace host
