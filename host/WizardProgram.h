// The title, exit statuses and errors that the wizard's programs of all front ends share.
#pragma once

#include "rtl/text/Exceptions.h"

namespace host {

inline constexpr char kWizardTitle[] = "Migration Wizard";

// Exit statuses.
inline constexpr int kExitFailed = 1;  // the run failed, and the user has seen why
inline constexpr int kExitUsage = 2;   // a mistake in the command line
inline constexpr int kExitException = 3;
inline constexpr int kExitStopped = 130;  // by the user

// A mistake in the command line.
class EUsage : public rtl::Exception {
 public:
  using Exception::Exception;
};

}  // namespace host
