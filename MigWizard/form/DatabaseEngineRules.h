// The property rules for the classes of the Borland Database Engine, and the properties that every class
// keeps.
#pragma once

#include <span>
#include <string_view>

#include "MigWizard/form/PropertyRules.h"

namespace mig {

// Returns the rules in the order in which they are tried; the first that fits decides.
std::span<const TPropertyRule> DatabaseEngineRules();

// Whether the property is the place of a component on its designer, which is kept whatever the class
// publishes.
bool IsDesignerProperty(std::string_view propName);

}  // namespace mig
