// Finds forms in the folders of a run that no unit of the run names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunHooks.h"
#include "rtl/text/StringList.h"

namespace mig {

// Returns True if the extension is that of a form, in any case.
bool IsFormFile(std::string_view fileName);

// Returns the full names of these form files: those of `listed`, the form files in the folders of the run, in
// their order, or the forms next to the units of a project with the units' names. Leaves out `files`, the
// full names of the files of a run, and files that `hooks` exclude.
std::vector<std::string> FindOtherForms(const TReplaceOptions& options, const TRunHooks& hooks,
                                        const rtl::TStringList& files,
                                        const std::vector<std::string>& listed);

}  // namespace mig
