// The objects that a host shares with a loadable module besides the IDE's interfaces. Inside the IDE the
// run-time library is a package that all modules share. Here every module has a copy of its own, and uses the
// host's front end, settings of the platform layer and observer of runs through this interface.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "toolsapi/Interfaces.h"

namespace rtl {
class IFrontEnd;
}
namespace mig {
enum class TRunPhase;
}

namespace toolsapi {

// The next step of a run of the module. The views are valid during the call.
struct TRunStep {
  std::string_view Title;        // of the wizard
  std::string_view FileName;     // full Windows path of the next file; empty after the last
  std::string_view LogFileName;  // full Windows path of the run's log; empty if none is written
  mig::TRunPhase Phase{};        // MigWizard/run/RunHooks.h
  int Done = 0;                  // files finished, of the phase
  int Known = 0;                 // files of the phase
};

class IHostRuntime : public IInterface {
 public:
  using TBase = IInterface;
  // Returns the front end, or null if the host has no screen. Not owned; outlives the module.
  virtual rtl::IFrontEnd* GetFrontEnd() = 0;
  virtual uint32_t GetSourceCodePage() = 0;
  // Returns the host path of the folder that a drive letter is mapped to, or an empty string.
  virtual std::string GetDriveFolder(char letter) = 0;
  // Called with True when a long operation begins, and with False when it ends.
  virtual void ShowWaiting(bool waiting) = 0;
  // Called before each step of a run. An exception, rtl::EAbort if the user wants to stop, ends the run. Must
  // not raise in a phase in which a run cannot be stopped.
  virtual void RunAdvanced(const TRunStep& step) = 0;
  // Called with a line for the user about a problem that does not stop the run.
  virtual void RunWarning(std::string_view message) = 0;
  // Returns the files that the active project lists and that do not exist, each with the place that names it.
  virtual std::vector<std::string> GetMissingFiles() = 0;
  // Returns True if the host can show the changes of a run. ShowChanges does so after the run.
  virtual bool CanShowChanges() = 0;
  virtual void ShowChanges() = 0;

 protected:
  ~IHostRuntime() = default;
};

template <>
inline constexpr TInterfaceId kIdOf<IHostRuntime>{"IHostRuntime",
                                                  TGuid("{6E0B1B52-3B0F-4C0A-9C0D-5A8D41E7F2C6}")};

}  // namespace toolsapi
