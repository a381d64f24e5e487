// kvamigrate replace.
#include <algorithm>
#include <new>
#include <optional>
#include <set>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/UndoFiles.h"
#include "MigWizard/run/UndoState.h"
#include "cli/CatalogueFile.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/ExcludeHint.h"
#include "cli/InteractiveChoice.h"
#include "cli/Interrupt.h"
#include "cli/PatchPrinter.h"
#include "cli/PathPattern.h"
#include "cli/Progress.h"
#include "cli/RunReport.h"
#include "cli/Scope.h"
#include "cli/Shell.h"
#include "cli/StandardStreams.h"
#include "cli/TypedPath.h"
#include "rtl/text/SysUtils.h"
#include "target/KVAReplacer.h"

namespace cli {
namespace {

// Raises mig::EBackupsExist if a run in the default backup folders of `folder` was not completed.
void RequireNoJournal(const std::string& folder) {
  for (const std::string& undoFile : mig::FindUndoFiles(folder)) {
    const std::string backupDir = rtl::ExtractFileDir(undoFile);
    if (mig::FindUndoState(backupDir) == mig::TUndoState::Journal)
      throw mig::EBackupsExist(mig::TUndoState::Journal, backupDir);
  }
}

// A folder with a drive is taken as it is, any other lies below `folder`, as in the wizard's dialog.
std::string TypedBackupDir(std::string typed, const std::string& folder) {
  if (typed.starts_with('/') || !rtl::ExtractFileDrive(typed).empty()) return WindowsPath(typed);
  std::replace(typed.begin(), typed.end(), '/', '\\');
  return mig::ResolveDots(mig::JoinPath(folder, typed));
}

std::string BackupDir(const TCommandLine& line, const std::string& folder) {
  RequireNoJournal(folder);
  if (line.BackupDir) return TypedBackupDir(*line.BackupDir, folder);
  if (line.NoBackup) return {};
  std::string chosen = mig::ChooseBackupDir(folder);
  if (!line.Quiet && chosen != mig::JoinPath(folder, mig::SBackupFolderName))
    Note("The backups go to \"" + chosen + "\", because the backups of earlier runs are kept.");
  return chosen;
}

// Returns a hint about a backup folder that cannot be used.
std::string BackupsExistHint(const mig::EBackupsExist& error, const TCommandLine& line) {
  if (error.State() == mig::TUndoState::Journal) {
    const std::string quote(1, kShellQuote);
    std::string command = "Type: kvamigrate restore " + quote + mig::JournalOf(error.BackupDir()) + quote;
    for (const auto& [letter, folder] : line.Drives)
      command.append(" --drive ").append(1, letter).append("=").append(quote).append(folder).append(quote);
    return command;
  }
  return "Choose another folder with --backup-dir, or overwrite the earlier backups with "
         "--overwrite-backups.";
}

// Prints the reason why a run stopped, and a hint.
int Stopped(const std::string& message, const std::string& hint) {
  Complain(message);
  if (!hint.empty()) Note(hint);
  return kExitException;
}

// Returns false, after a message, if the summary or a report could not be made. The run itself is over.
bool FinishReport(TRunReport& report, bool isDryRun) {
  try {
    return report.Finish();
  } catch (const std::bad_alloc&) {
    ComplainOutOfMemory({});
    Note(isDryRun ? "No file was changed. The summary or a report is missing."
                  : "The run is complete, and only its summary or a report is missing.");
    return false;
  }
}

// Previews a run, and waits until its patch was read.
void Preview(mig::TComponentReplacer& replacer, TPatchPrinter& patches) {
  try {
    replacer.Preview();
  } catch (...) {
    patches.Finish();  // before the message
    throw;
  }
  patches.Finish();
}

// `choice` is null unless the user chooses what to replace.
int RunReplacer(mig::TComponentReplacer& replacer, const TScope& scope, const TCommandLine& line,
                TRunReport& report, TPatchPrinter& patches, TInteractiveChoice* choice) {
  // A pager has the terminal for itself.
  const bool showsProgress = !line.Quiet && !(line.Diff && IsTerminal(TStream::Output));
  std::string fileName;              // the current file; empty after the last one is converted
  std::set<std::string> complaints;  // repeated by the run after a choice
  replacer.OnProgress = [&](const mig::TRunProgress& progress) {
    fileName = progress.FileName;
    StopIfInterrupted("Stopped: no file was replaced.");
    if (showsProgress) ShowProgress(progress.Done, progress.Known, progress.FileName);
  };
  replacer.OnWarning = [&](std::string_view message) {
    if (choice == nullptr || complaints.emplace(message).second) Complain(message);
  };
  const auto hint = [&] { return fileName.empty() ? std::string() : ExcludeHint(fileName, scope.Folder); };
  try {
    const bool isDeclined = choice != nullptr && !choice->Ask();
    if (isDeclined) report.SetDeclined();
    const bool isPreview = line.DryRun || isDeclined;
    if (isPreview) Preview(replacer, patches);
    const bool succeeded = isPreview || replacer.Replace();
    const size_t leftOut = replacer.LeftOut().size() + scope.MissingUnits;
    if (leftOut > 0) Note("Left out, as reported above: " + std::to_string(leftOut) + ".");
    const bool isReported = FinishReport(report, line.DryRun);
    if (!succeeded) return PrintOutcome(false, mig::SReplaceSuccess, mig::SReplaceFailed, line.Quiet);
    // A run that left files out is no success, even though each file that it converted is in place.
    if (leftOut > 0 || !isReported) return kExitPart;
    if (line.DryRun) return kExitOk;
    return PrintOutcome(true, isPreview ? "Nothing was replaced." : mig::SReplaceSuccess, mig::SReplaceFailed,
                        line.Quiet);
  } catch (const mig::ENameClash& error) {
    return Stopped(error.what(), ExcludeOneHint(error.First(), error.Second(), scope.Folder));
  } catch (const mig::EBackupsExist& error) {
    return Stopped(error.what(), BackupsExistHint(error, line));
  } catch (const mig::EFileConversion& error) {
    return Stopped(error.what(), hint());
  } catch (const rtl::EFOpenError& error) {
    return Stopped(error.what(), hint());
  } catch (const rtl::EReadError& error) {
    return Stopped(error.what(), hint());
  }
}

}  // namespace

int RunReplace(const TCommandLine& line) {
  if (line.Mode.empty()) throw EUsage("Say which components to replace: --mode bde or --mode ibx.");
  if (line.OverwriteBackups && !line.BackupDir) throw EUsage("--overwrite-backups needs --backup-dir.");
  if (line.Interactive && line.DryRun) throw EUsage("--interactive cannot be used with --dry-run or --diff.");
  if (line.Interactive && !CanAsk())
    throw EUsage("--interactive needs terminals as standard input and output.");
  if (line.IgnoreSpace && !line.Diff && !line.Interactive)
    throw EUsage("--ignore-space needs --diff or --interactive.");
  if (line.Colour != "auto" && !line.Diff && !line.Interactive)
    throw EUsage("--color needs --diff or --interactive.");
  RequireReportNames(line);
  target::TKVAMigration migration(LoadCatalogue(line.Catalogue));
  target::TKVAComponentReplacer& replacer = line.Mode == "ibx" ? migration.IBX() : migration.BDE();
  if (line.Complete) migration.Complete(*line.Complete);
  mig::TReplaceOptions& options = migration.Options();
  host::THost host;
  const TScope scope = SetScope(line, host, options);
  options.MakeBackup = !line.NoBackup && !line.DryRun;
  options.WriteLog = !line.NoLog && !line.DryRun;
  options.ViewLog = line.ViewLog && !line.DryRun;
  options.Policy.Strict = true;
  options.Policy.OverwriteBackups = line.OverwriteBackups;
  options.Policy.SkipConverted = line.SkipConverted;
  options.Policy.KeepGoing = line.KeepGoing;
  try {
    if (!line.DryRun) options.BackupDir = BackupDir(line, scope.Folder);
  } catch (const mig::EBackupsExist& error) {
    return Stopped(error.what(), BackupsExistHint(error, line));
  }

  const TPathPatterns patterns(line.Exclude);
  if (!patterns.Empty()) {
    replacer.OnExclude = [&](std::string_view fileName) {
      return patterns.Match(PathBelow(scope.Folder, fileName));
    };
  }
  std::optional<TInteractiveChoice> choice;
  if (line.Interactive) choice.emplace(line, replacer, scope.Folder);
  CatchInterrupts();
  TRunReport report(line, replacer, options, scope.Folder, line.DryRun);
  TPatchPrinter patches(line, scope.Folder);
  if (line.Diff) {
    replacer.OnConverted = [&patches, collect = replacer.OnConverted](const std::string& fileName,
                                                                      const mig::TFileConversion& conversion,
                                                                      bool isChanged) {
      if (collect) collect(fileName, conversion, isChanged);
      if (isChanged) patches.Print(fileName, conversion);
    };
  }
  const int status = RunReplacer(replacer, scope, line, report, patches, choice ? &*choice : nullptr);
  if (const std::string hint = patches.ApplyHint(); !hint.empty() && !line.Quiet) Note(hint);
  return status;
}

}  // namespace cli
