#include "host/WizardRun.h"

#include "host/Host.h"
#include "target/KVAExpert.h"
#include "target/KVAReplacer.h"

namespace host {

void RunWizard(std::string_view project, const target::TCatalogue& catalogue, mig::TRunView& view) {
  THost host;
  if (!project.empty()) static_cast<void>(host.OpenProject(project, /*newGroup=*/true));
  target::TKVAMigration migration(catalogue);
  const auto expert = target::MakeExpert(migration);
  const mig::TRunWatch watch(view, {&migration.BDE(), &migration.IBX()});
  expert->ShowWizard();
}

}  // namespace host
