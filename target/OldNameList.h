// The identifiers of the old components that a run reports, from oldnames.txt, which the build compiles in.
#pragma once

#include <string_view>

#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/OldNames.h"

namespace target {

// Reads a list in the format of oldnames.txt. Members of an old class count for its new class too, so that units are
// understood before and after their conversion. Raises rtl::Exception on a line that is not understood, with its
// number.
mig::TOldNames ReadOldNames(std::string_view text, const mig::TClassMap& classes);

// The list that is compiled in.
mig::TOldNames BuiltInOldNames(const mig::TClassMap& classes);

}  // namespace target
