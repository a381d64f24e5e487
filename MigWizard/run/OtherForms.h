// The forms that lie where a run works and that no unit of the run names.
#pragma once

#include <string>
#include <vector>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunHooks.h"
#include "rtl/text/StringList.h"

namespace mig {

// Returns the full names of the form files, in the order of a walk, that are not in `files`, the full names of the
// files of a run, and that `hooks` do not exclude: those in the folder to scan, with its subfolders if `options` ask
// for them; or those beside the units of a project under the units' names. Folders that cannot be read are passed
// over.
std::vector<std::string> FindOtherForms(const TReplaceOptions& options, const TRunHooks& hooks,
                                        const rtl::TStringList& files);

}  // namespace mig
