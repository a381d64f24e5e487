// Creates the expert of this product from its form, name, menu and replacers.
#pragma once

#include "MigWizard/expert/ReplaceExpert.h"
#include "target/KVAReplacer.h"

namespace target {

// The host's services must be set (toolsapi/ToolsAPI.h). `migration` is not owned and must outlive the
// expert. The replacers are in the order of the wizard's modes.
toolsapi::TIntf<mig::TCompReplaceExpert> MakeExpert(TKVAMigration& migration);

}  // namespace target
