// The binary part of a git patch: whole contents, deflated and written in base 85.
#pragma once

#include <string>
#include <string_view>

namespace diff {

// Returns the lines from "GIT binary patch" to the empty line after the second literal: the new contents,
// then the old ones, so that the patch can be applied in both directions. Raises std::bad_alloc when memory
// runs out.
std::string BinaryPatch(std::string_view oldBytes, std::string_view newBytes);

}  // namespace diff
