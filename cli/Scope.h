// What a run converts: the folder or the project of the command line.
#pragma once

#include <string>

#include "MigWizard/run/ReplaceOptions.h"
#include "cli/CommandLine.h"
#include "host/Host.h"

namespace cli {

// Stores the scope in `options`, opens the project in `host` if there is one, and returns the full Windows
// path of the folder that the log and the backups belong to. Raises EUsage if the command line does not say
// what to convert, or if that does not exist.
std::string SetScope(const TCommandLine& line, host::THost& host, mig::TReplaceOptions& options);

}  // namespace cli
