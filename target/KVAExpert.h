// The expert of this product: its form, name, menu and replacers, put together.
#pragma once

#include "MigWizard/expert/ReplaceExpert.h"
#include "target/KVAReplacer.h"

namespace target {

// The host's services are set (toolsapi/ToolsAPI.h). `migration` is not owned, and outlives the expert. The
// order of the replacers is that of the wizard's modes.
toolsapi::TIntf<mig::TCompReplaceExpert> MakeExpert(TKVAMigration& migration);

}  // namespace target
