// Observes a host. Each call comes after the change, on the main thread, from within the operation that
// made the change. An observer must not change the host.
#pragma once

#include <string_view>

namespace toolsapi {
struct TRunStep;
}

namespace mig {
struct TRunResult;
}

namespace host {

class TFileBuffer;
class TFileEditor;
class TModule;

class THostObserver {
 public:
  virtual ~THostObserver() = default;

  // A group or a project was opened, with everything in it.
  virtual void ProjectOpened() {}
  // A group or a project was closed.
  virtual void ProjectClosed() {}
  virtual void ActiveProjectChanged() {}
  // A unit was opened.
  virtual void ModuleOpened(TModule& module) { static_cast<void>(module); }
  // A unit was closed. The module still exists.
  virtual void ModuleClosed(TModule& module) { static_cast<void>(module); }
  // The bytes of a buffer changed, or its modified flag.
  virtual void BufferChanged(TFileBuffer& buffer) { static_cast<void>(buffer); }
  // An editor must be brought to the front.
  virtual void EditorShown(TFileEditor& editor) { static_cast<void>(editor); }
  virtual void MenuChanged() {}
  // A wizard of a loaded module is running. Only this call may raise an exception, which stops the run.
  virtual void RunAdvanced(const toolsapi::TRunStep& step) { static_cast<void>(step); }
  virtual void RunWarning(std::string_view message) { static_cast<void>(message); }
  // The run has converted its files, and will replace them next.
  virtual void RunConverted(const mig::TRunResult& result) { static_cast<void>(result); }
};

}  // namespace host
