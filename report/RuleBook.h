// The documentation of the rules.
#pragma once

#include <string>

namespace report {

// Returns the text of docs/rules.md.
std::string RuleBook();

}  // namespace report
