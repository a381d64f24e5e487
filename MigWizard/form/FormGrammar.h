// The grammar of form text: what counts as a well-formed object block.
#pragma once

#include <span>
#include <string_view>

namespace mig {

// The rule strings in the order of loading, in the rule language of MigWizard/LL1Grammar.h.
std::span<const std::string_view> FormGrammar();

}  // namespace mig
