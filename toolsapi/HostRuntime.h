// What a host shares with a loadable module beyond the IDE's interfaces. Inside the IDE the run-time library
// is a package that all modules share. Here every module has a copy of its own, and uses the host's front
// end, settings of the platform layer and observer of runs through this interface.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "toolsapi/Interfaces.h"

namespace rtl {
class IFrontEnd;
}

namespace toolsapi {

// A step that a run of the module is about to take. The views are valid during the call.
struct TRunStep {
  std::string_view Title;        // of the wizard
  std::string_view FileName;     // full Windows path of the next file; empty after the last
  std::string_view LogFileName;  // full Windows path of the run's log; empty if none is written
  int Done = 0;                  // files finished
  int Known = 0;                 // files found so far
  bool CanStop = false;          // False for a restore, which writes originals from the first file on
};

class IHostRuntime : public IInterface {
 public:
  using TBase = IInterface;
  // Not owned, and outlives the module; null in a host without a screen.
  virtual rtl::IFrontEnd* GetFrontEnd() = 0;
  virtual uint32_t GetSourceCodePage() = 0;
  // Returns the host path of the folder that a drive letter is mapped to, or an empty string.
  virtual std::string GetDriveFolder(char letter) = 0;
  // True when a long operation begins, False when it ends.
  virtual void ShowWaiting(bool waiting) = 0;
  // An exception out of it, rtl::EAbort when the user wants to stop, ends the run.
  virtual void RunAdvanced(const TRunStep& step) = 0;
  // A line for the user about something that does not stop the run.
  virtual void RunWarning(std::string_view message) = 0;

 protected:
  ~IHostRuntime() = default;
};

template <>
inline constexpr TInterfaceId kIdOf<IHostRuntime>{"IHostRuntime",
                                                  TGuid("{6E0B1B52-3B0F-4C0A-9C0D-5A8D41E7F2C6}")};

}  // namespace toolsapi
