// The layout of converted objects: a form keeps the indentation and the line ends that it had.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/FormPass.h"

namespace completion {

// Returns `text` with the edits, which are in the order of the text and do not overlap.
//
// With `layOutAll`, and for an edit that says so, objects are laid out like their originals: a line that means the same
// as a line of the original keeps its bytes, all others are indented to the object's place and end as the lines of the
// form do, and white space after an object stays. Without it they are put in as they were printed.
std::string ApplyFormEdits(std::string_view text, const std::vector<mig::TFormEdit>& edits, bool layOutAll);

}  // namespace completion
