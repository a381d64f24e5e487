// The commands of kvamigrate. Each returns the exit status of the program (cli/CommandLine.h). Exceptions
// propagate to the caller.
#pragma once

#include "cli/CommandLine.h"
#include "rtl/text/Exceptions.h"

namespace cli {

// A mistake in the command line.
class EUsage : public rtl::Exception {
 public:
  using Exception::Exception;
};

int RunReplace(const TCommandLine& line);
int RunCheck(const TCommandLine& line);
int RunRules();
int RunRestore(const TCommandLine& line);
int RunForm(const TCommandLine& line);
int RunCatalogue(const TCommandLine& line);
// Replaces this process by the desktop program. Does not return; raises an exception if the program cannot
// be started.
int RunWizard(const TCommandLine& line);

}  // namespace cli
