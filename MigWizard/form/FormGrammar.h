// The grammar of form text. It accepts a well-formed object block.
#pragma once

#include <span>
#include <string_view>

namespace mig {

// Returns the rule strings in the order of loading; see MigWizard/engine/LL1Grammar.h for their language.
std::span<const std::string_view> FormGrammar();

}  // namespace mig
