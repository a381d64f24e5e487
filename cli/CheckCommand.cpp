// kvamigrate check.
#include "cli/CatalogueFile.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/ExcludeHint.h"
#include "cli/Interrupt.h"
#include "cli/PathPattern.h"
#include "cli/Progress.h"
#include "cli/RunReport.h"
#include "cli/Scope.h"
#include "report/RuleBook.h"

namespace cli {

int RunCheck(const TCommandLine& line) {
  if (line.Mode.empty()) throw EUsage("Say which components to look for: --mode bde or --mode ibx.");
  target::TKVAMigration migration(LoadCatalogue(line.Catalogue));
  target::TKVAComponentReplacer& replacer = line.Mode == "ibx" ? migration.IBX() : migration.BDE();
  if (line.Complete) migration.Complete(*line.Complete);
  mig::TReplaceOptions& options = migration.Options();
  host::THost host;
  const TScope scope = SetScope(line, host, options);
  const std::string& base = scope.Folder;
  options.Policy.Strict = true;
  options.Policy.KeepGoing = line.KeepGoing;
  options.MakeBackup = false;
  options.WriteLog = false;
  const TPathPatterns patterns(line.Exclude);
  if (!patterns.Empty()) {
    replacer.OnExclude = [&](std::string_view fileName) { return patterns.Match(PathBelow(base, fileName)); };
  }
  replacer.OnProgress = [&](const mig::TRunProgress& progress) {
    StopIfInterrupted("Stopped.");
    if (!line.Quiet) ShowProgress(progress.Done, progress.Known, progress.FileName);
  };
  replacer.OnWarning = Complain;
  CatchInterrupts();
  TRunReport report(line, replacer, options, base, /*isPreview=*/true);
  replacer.Preview();
  ClearProgress();
  const bool isWritten = report.Finish();

  bool hasFound = false;
  for (const mig::TFileReport& file : report.Report().Files) {
    hasFound = hasFound || file.IsChanged;
    const std::string path = report::PathOf(report.Report(), file);
    for (const mig::TFinding& finding : file.Findings) {
      hasFound = hasFound || finding.Level != mig::TLevel::Note;
      PrintLine(report::FindingLine(path, finding));
    }
  }
  const bool isWhole = isWritten && replacer.LeftOut().empty() && scope.MissingUnits == 0;
  return hasFound ? kExitFound : isWhole ? kExitOk : kExitPart;
}

int RunRules() {
  PrintText(report::RuleBook());
  return kExitOk;
}

}  // namespace cli
