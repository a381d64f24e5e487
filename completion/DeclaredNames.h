// The names that a unit declares itself: types, constants, variables, fields, parameters, routines, properties.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "completion/UnitTokens.h"

namespace completion {

// Returns the names in lower case. Those between conditional directives, and the values of enumerations, are not
// found.
std::unordered_set<std::string> FindDeclaredNames(const std::vector<TUnitToken>& tokens);

// Returns True if the token `i` follows a full stop, as in "Unit.Name". The end of a range does not.
bool IsMember(const std::vector<TUnitToken>& tokens, size_t i);

}  // namespace completion
