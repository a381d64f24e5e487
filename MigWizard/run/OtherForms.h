// Finds forms in the folders of a run that no unit of the run names.
#pragma once

#include <string>
#include <vector>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunHooks.h"
#include "rtl/text/StringList.h"

namespace mig {

// Returns the full names of these form files, in the order of a walk: the forms in the folder to scan, with
// its subfolders if `options` include them, or the forms next to the units of a project with the units'
// names. Leaves out `files`, the full names of the files of a run, and files that `hooks` exclude. Skips
// folders that cannot be read.
std::vector<std::string> FindOtherForms(const TReplaceOptions& options, const TRunHooks& hooks,
                                        const rtl::TStringList& files);

}  // namespace mig
