// The scope of a run: the folder or the project on the command line.
#pragma once

#include <cstddef>
#include <string>

#include "MigWizard/run/ReplaceOptions.h"
#include "cli/CommandLine.h"
#include "host/Host.h"

namespace cli {

struct TScope {
  std::string Folder;       // full Windows path; the log and the backups are stored below it
  size_t MissingUnits = 0;  // of a project: units that cannot be read; each was reported
};

// Stores the scope in `options`, and opens the project in `host` if there is one. Raises EUsage if the
// command line names no scope or one that does not exist. Also raises the host's exceptions.
TScope SetScope(const TCommandLine& line, host::THost& host, mig::TReplaceOptions& options);

}  // namespace cli
