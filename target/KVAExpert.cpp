#include "target/KVAExpert.h"

#include "qrl/KVAMenu.h"
#include "target/KVAWizard.h"

namespace target {

toolsapi::TIntf<mig::TCompReplaceExpert> MakeExpert(TKVAMigration& migration) {
  auto expert =
      toolsapi::MakeIntf<mig::TCompReplaceExpert>(&NewKVAWizardForm, "KORVA", qrl::Menu(), migration.BDE());
  expert->AddReplacer(migration.IBX());
  return expert;
}

}  // namespace target
