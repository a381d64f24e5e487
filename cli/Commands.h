// The commands of kvamigrate. Each one gives the program's exit status (cli/CommandLine.h); exceptions are
// the caller's.
#pragma once

#include <string>

#include "cli/CommandLine.h"
#include "rtl/text/Exceptions.h"

namespace cli {

// A mistake in the command line that shows only when the files are looked at.
class EUsage : public rtl::Exception {
 public:
  using Exception::Exception;
};

int RunReplace(const TCommandLine& line);
int RunRestore(const TCommandLine& line);
int RunForm(const TCommandLine& line);
int RunCatalogue(const TCommandLine& line);
// Becomes the desktop program; comes back only when that cannot be started, with an exception.
int RunWizard(const TCommandLine& line);

}  // namespace cli
