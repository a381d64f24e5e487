// kvamigrate restore.
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Restore.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Progress.h"
#include "cli/TypedPath.h"

namespace cli {

int RunRestore(const TCommandLine& line) {
  mig::TRestorePlan plan;
  plan.Add(WindowsPath(line.Arguments[0]));
  const int count = static_cast<int>(plan.Lines().size());
  const bool restored = plan.Execute(
      [&](int done, const mig::TRestoreLine& file) {
        if (!line.Quiet) ShowProgress(done, count, file.Original);
      },
      Complain);
  return PrintOutcome(restored, mig::SRestoreSuccess, mig::SRestoreFailed, line.Quiet);
}

}  // namespace cli
