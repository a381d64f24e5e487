// The identifiers of the old components that a run reports, from oldnames.txt, which the build compiles in.
#pragma once

#include <string_view>

#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/OldNames.h"

namespace target {

// Reads a list in the format of oldnames.txt. Members of an old class also count for its new class, so that
// units are understood before and after their conversion. Raises rtl::Exception with the line number for a
// line that is not valid.
mig::TOldNames ReadOldNames(std::string_view text, const mig::TClassMap& classes);

// Returns the compiled-in list.
mig::TOldNames BuiltInOldNames(const mig::TClassMap& classes);

}  // namespace target
