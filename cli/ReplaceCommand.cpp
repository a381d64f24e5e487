#include <cstdio>
#include <utility>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "cli/PathPattern.h"
#include "cli/Progress.h"
#include "cli/TypedPath.h"
#include "host/HostError.h"
#include "host/ProjectChoice.h"
#include "rtl/text/Streams.h"
#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"
#include "target/Catalogue.h"
#include "target/KVAReplacer.h"

namespace cli {
namespace {

constexpr char kDefaultBackupDir[] = "RBackup";

target::TCatalogue LoadCatalogue(const std::string& fileName) {
  if (fileName.empty()) return target::TCatalogue::BuiltIn();
  rtl::TFileStream file(WindowsPath(fileName), rtl::fmOpenRead | rtl::fmShareDenyNone);
  return {file.ReadToEnd(), fileName};
}

// The wizard's rule: an entry with a drive stands for itself, any other lies under `base`.
std::string BackupDir(const std::optional<std::string>& typed, const std::string& base) {
  if (!typed) return mig::JoinPath(base, kDefaultBackupDir);
  if (typed->starts_with('/') || !rtl::ExtractFileDrive(*typed).empty()) return WindowsPath(*typed);
  std::string entry = *typed;
  for (char& c : entry)
    if (c == '/') c = '\\';
  return mig::JoinPath(base, entry);
}

void Print(std::FILE* file, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), file);
  std::fputc('\n', file);
}

int Outcome(bool succeeded, const char* good, const char* bad) {
  Print(stdout, succeeded ? good : bad);
  return succeeded ? kExitOk : kExitFailed;
}

// Shows progress, passes warnings on, stops at Ctrl-C; and remembers which file an error belongs to.
class TRunWatch {
 public:
  explicit TRunWatch(mig::TComponentReplacer& replacer) {
    replacer.OnProgress = [this](const mig::TRunProgress& progress) {
      FFileName = progress.FileName;
      StopIfInterrupted();
      FLine.Show(progress.Done, progress.Known, progress.FileName);
    };
    replacer.OnWarning = [this](std::string_view message) {
      FLine.Clear();
      Print(stderr, std::string("kvamigrate: ").append(message));
    };
  }

  void Clear() { FLine.Clear(); }
  // The file that was under way, or empty.
  const std::string& FileName() const { return FFileName; }

 private:
  TProgressLine FLine;
  std::string FFileName;
};

std::string PathBelow(const std::string& base, std::string_view fileName) {
  return rtl::ExtractRelativePath(mig::JoinPath(base, ""), fileName);
}

// The pattern that leaves a file out. "?" stands for characters that would not stand for themselves there, or
// between quotes of a shell.
std::string ExcludePattern(const std::string& fileName, const std::string& base) {
  std::string pattern = PathBelow(base, fileName);
  for (char& c : pattern)
    if (c == '[' || c == '*' || c == '\'') c = '?';
  return pattern;
}

// The same for one of two files that are in each other's way; empty if every such pattern fits both, as it
// does for names that differ in case alone.
std::string ExcludeOneOf(const std::string& one, const std::string& other, const std::string& base) {
  for (const auto& [out, kept] : {std::pair(one, other), std::pair(other, one)}) {
    std::string pattern = ExcludePattern(out, base);
    if (!TPathPatterns({pattern}).Match(PathBelow(base, kept))) return pattern;
  }
  return {};
}

// What to do about the file that ended a run; empty where leaving files out does not help.
std::string ExcludeHint(const TRunWatch& watch, const std::string& base) {
  if (watch.FileName().empty()) return {};
  return "Leave the file out with --exclude '" + ExcludePattern(watch.FileName(), base) +
         "' to convert the others. No file was changed.";
}

std::string ExcludeTwinHint(const mig::ETwinFiles& twins, const std::string& base) {
  const std::string pattern = ExcludeOneOf(twins.First(), twins.Second(), base);
  if (pattern.empty()) return {};
  return "Leave one of them out with --exclude '" + pattern +
         "' and convert it in a run of its own. No file was changed.";
}

// What is to be scanned, as options of the run. The folder that log and backups belong to.
std::string SetFolder(const TCommandLine& line, mig::TReplaceOptions& options) {
  options.Dest = mig::sdFolder;
  options.Directory = WindowsPath(line.Folder);
  options.IncludeSubDirs = line.SubFolders;
  if (!rtl::DirectoryExists(options.Directory))
    throw EUsage(rtl::Format(mig::STargetDirNotExist, {options.Directory}));
  return options.Directory;
}

// The same for the units of the project, which `host` then holds open.
std::string SetProject(const TCommandLine& line, host::THost& host, mig::TReplaceOptions& options) {
  try {
    const host::TProject& project = host::OpenProjectForRun(host, line.Project, line.ActiveProject);
    rtl::TStringList units;
    for (const std::string& unit : host::SelectUnits(project, line.Units)) units.Add(unit);
    options.Dest = mig::sdProject;
    options.UnitNames = units.Text();
  } catch (const host::EChoiceError& error) {
    throw EUsage(error.what());
  }
  return rtl::ExtractFileDir(mig::TIDEUtils::GetProjectFileName());
}

}  // namespace

int RunReplace(const TCommandLine& line) {
  target::TKVAMigration migration(LoadCatalogue(line.Catalogue));
  target::TKVAComponentReplacer& replacer = line.ModeIBX ? migration.IBX() : migration.BDE();
  mig::TReplaceOptions& options = migration.Options();
  host::THost host;
  const std::string base = line.Project.empty() ? SetFolder(line, options) : SetProject(line, host, options);
  options.MakeBackup = !line.NoBackup;
  options.BackupDir = BackupDir(line.BackupDir, base);
  options.WriteLog = !line.NoLog;
  options.ViewLog = line.ViewLog;

  const TPathPatterns patterns(line.Exclude);
  if (!patterns.Empty()) {
    replacer.OnExclude = [&](std::string_view fileName) { return patterns.Match(PathBelow(base, fileName)); };
  }
  TRunWatch watch(replacer);
  const auto stopped = [&watch](const rtl::Exception& error, const std::string& hint) {
    watch.Clear();
    Print(stderr, std::string("kvamigrate: ") + error.what());
    if (!hint.empty()) Print(stderr, hint);
    return kExitException;
  };
  CatchInterrupts();
  try {
    const bool succeeded = replacer.Replace();
    watch.Clear();
    return Outcome(succeeded, mig::SReplaceSuccess, mig::SReplaceFailed);
  } catch (const rtl::EAbort&) {
    throw;
  } catch (const mig::ETwinFiles& error) {
    return stopped(error, ExcludeTwinHint(error, base));
  } catch (const rtl::Exception& error) {
    return stopped(error, ExcludeHint(watch, base));
  }
}

int RunRestore(const TCommandLine& line) {
  target::TKVAMigration migration(target::TCatalogue::BuiltIn());
  TRunWatch watch(migration.BDE());
  const bool succeeded = migration.BDE().Restore(WindowsPath(line.UndoFile));
  watch.Clear();
  return Outcome(succeeded, mig::SRestoreSuccess, mig::SRestoreFailed);
}

int RunCatalogue(const TCommandLine& line) {
  std::fputs(LoadCatalogue(line.Catalogue).Text().c_str(), stdout);
  return kExitOk;
}

}  // namespace cli
