// The initial units of a run: the selected ones of the active project, or those of a folder.
#pragma once

#include <string>
#include <vector>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunHooks.h"
#include "rtl/text/StringList.h"

namespace mig {

// Appends the full names of the units that `options` select and `hooks` do not exclude to the empty list
// `units`, in processing order. Appends folders that cannot be read to `leftOut`, and reports them with
// OnWarning. `forms`, unless null, gets the full names of all form files in the folders that were listed.
void InitUnitList(const TReplaceOptions& options, const TRunHooks& hooks, rtl::TStringList& units,
                  std::vector<TLeftOut>& leftOut, std::vector<std::string>* forms = nullptr);

// Returns the folder of a run, which holds its log: the project's folder, or the folder to scan.
std::string RunFolder(const TReplaceOptions& options);

}  // namespace mig
