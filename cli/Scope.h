// What a run converts: the folder or the project of the command line.
#pragma once

#include <cstddef>
#include <string>

#include "MigWizard/run/ReplaceOptions.h"
#include "cli/CommandLine.h"
#include "host/Host.h"

namespace cli {

struct TScope {
  std::string Folder;       // full Windows path; the log and the backups belong there
  size_t MissingUnits = 0;  // of a project: units that cannot be read; each was reported
};

// Stores the scope in `options`, and opens the project in `host` if there is one. Raises EUsage if the
// command line does not say what to convert, or if that does not exist; and what the host raises.
TScope SetScope(const TCommandLine& line, host::THost& host, mig::TReplaceOptions& options);

}  // namespace cli
