// kvamigrate replace.
#include <new>
#include <utility>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "cli/CatalogueFile.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Interrupt.h"
#include "cli/PathPattern.h"
#include "cli/Progress.h"
#include "cli/Scope.h"
#include "cli/TypedPath.h"
#include "rtl/text/SysUtils.h"
#include "target/KVAReplacer.h"

namespace cli {
namespace {

constexpr char kDefaultBackupDir[] = "RBackup";

// A folder with a drive is taken as it is, any other lies below `base`, as in the wizard's dialog.
std::string BackupDir(const std::optional<std::string>& typed, const std::string& base) {
  if (!typed) return mig::JoinPath(base, kDefaultBackupDir);
  if (typed->starts_with('/') || !rtl::ExtractFileDrive(*typed).empty()) return WindowsPath(*typed);
  std::string entry = *typed;
  for (char& c : entry)
    if (c == '/') c = '\\';
  return mig::JoinPath(base, entry);
}

std::string PathBelow(const std::string& base, std::string_view fileName) {
  return rtl::ExtractRelativePath(mig::JoinPath(base, ""), fileName);
}

// Returns the pattern that leaves a file out. "?" replaces the characters that have a meaning in a pattern or
// between the quotes of a shell.
std::string ExcludePattern(const std::string& fileName, const std::string& base) {
  std::string pattern = PathBelow(base, fileName);
  for (char& c : pattern)
    if (c == '[' || c == '*' || c == '\'') c = '?';
  return pattern;
}

// Returns a pattern that leaves out one of two files and not the other; empty if there is none, as for names
// that differ in case alone.
std::string ExcludeOneOf(const std::string& one, const std::string& other, const std::string& base) {
  for (const auto& [out, kept] : {std::pair(one, other), std::pair(other, one)}) {
    std::string pattern = ExcludePattern(out, base);
    if (!TPathPatterns({pattern}).Match(PathBelow(base, kept))) return pattern;
  }
  return {};
}

void NoteExclude(const std::string& fileName, const std::string& base) {
  if (fileName.empty()) return;
  Note("Leave the file out with --exclude '" + ExcludePattern(fileName, base) +
       "' to convert the others. No file was changed.");
}

void NoteExcludeTwin(const mig::ETwinFiles& twins, const std::string& base) {
  const std::string pattern = ExcludeOneOf(twins.First(), twins.Second(), base);
  if (pattern.empty()) return;
  Note("Leave one of them out with --exclude '" + pattern +
       "' and convert it in a run of its own. No file was changed.");
}

// Runs the replacement; whatever stops it is said on standard error, with what to do about it.
int RunReplacer(mig::TComponentReplacer& replacer, const std::string& base, bool isQuiet) {
  std::string fileName;  // the present file; empty after the last one is converted
  replacer.OnProgress = [&](const mig::TRunProgress& progress) {
    fileName = progress.FileName;
    StopIfInterrupted("Stopped: no file was replaced.");
    if (!isQuiet) ShowProgress(progress.Done, progress.Known, progress.FileName);
  };
  replacer.OnWarning = Complain;
  try {
    return PrintOutcome(replacer.Replace(), mig::SReplaceSuccess, mig::SReplaceFailed, isQuiet);
  } catch (const mig::ETwinFiles& error) {
    Complain(error.what());
    NoteExcludeTwin(error, base);
  } catch (const mig::EFileConversion& error) {
    Complain(error.what());
    NoteExclude(fileName, base);
  } catch (const rtl::EFOpenError& error) {
    Complain(error.what());
    NoteExclude(fileName, base);
  } catch (const rtl::EReadError& error) {
    Complain(error.what());
    NoteExclude(fileName, base);
  } catch (const std::bad_alloc&) {
    ClearProgress();
    ComplainOutOfMemory(fileName);
  }
  return kExitException;
}

}  // namespace

int RunReplace(const TCommandLine& line) {
  if (line.Mode.empty()) throw EUsage("Say which components to replace: --mode bde or --mode ibx.");
  target::TKVAMigration migration(LoadCatalogue(line.Catalogue));
  target::TKVAComponentReplacer& replacer = line.Mode == "ibx" ? migration.IBX() : migration.BDE();
  mig::TReplaceOptions& options = migration.Options();
  host::THost host;
  const std::string base = SetScope(line, host, options);
  options.MakeBackup = !line.NoBackup;
  options.BackupDir = BackupDir(line.BackupDir, base);
  options.WriteLog = !line.NoLog;
  options.ViewLog = line.ViewLog;

  const TPathPatterns patterns(line.Exclude);
  if (!patterns.Empty()) {
    replacer.OnExclude = [&](std::string_view fileName) { return patterns.Match(PathBelow(base, fileName)); };
  }
  CatchInterrupts();
  return RunReplacer(replacer, base, line.Quiet);
}

}  // namespace cli
