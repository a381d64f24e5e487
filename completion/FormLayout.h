// The layout of converted objects: a form keeps the indentation and the line ends that it had.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/FormPass.h"

namespace completion {

// Returns `text` with the edits, which are in the order of the text and do not overlap.
//
// With `layOutAll`, and for an edit that asks for it, objects are laid out like their originals: a line with
// the same meaning as a line of the original keeps its bytes, all other lines get the indentation of the
// object and the line ends of the form, and white space after an object is kept. Otherwise objects are
// inserted as they were printed.
std::string ApplyFormEdits(std::string_view text, const std::vector<mig::TFormEdit>& edits, bool layOutAll);

}  // namespace completion
