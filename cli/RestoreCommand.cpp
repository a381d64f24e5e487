// kvamigrate restore.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Restore.h"
#include "MigWizard/run/UndoFiles.h"
#include "MigWizard/run/UndoState.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Interrupt.h"
#include "cli/PathPattern.h"
#include "cli/Progress.h"
#include "cli/TypedPath.h"
#include "rtl/text/SysUtils.h"
#include "win/FileSystem.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

using mig::TRestoreLine;
using mig::TRestoreVerdict;

// Returns the undo files to restore from, the latest run first.
std::vector<std::string> UndoFiles(const TCommandLine& line) {
  const std::string& typed = line.Arguments[0];
  const std::string path = WindowsPath(typed);
  RequireReachable(path);
  if (rtl::FileExists(path)) {
    if (line.All) throw EUsage("--all takes a folder, not an undo file.");
    return {path};
  }
  if (!rtl::DirectoryExists(path)) throw EUsage("There is no undo file or folder \"" + typed + "\".");
  std::vector<std::string> files = mig::FindUndoFiles(path);
  if (files.empty())
    throw EUsage("There is no undo file in \"" + typed + "\" or in a backup folder below it.");
  if (!line.All && files.size() > 1) {
    Note(std::string(line.List ? "The last run is" : "Undoing the last run,") + " of \"" + files[0] +
         "\". With --all, earlier runs are " + (line.List ? "listed" : "undone") + ", too.");
    files.resize(1);
  }
  return files;
}

// A pattern with a separator matches the end of a path, starting at the name of a folder.
TPathPatterns OnlyPatterns(const std::vector<std::string>& typed) {
  std::vector<std::string> patterns = typed;
  for (const std::string& pattern : typed)
    if (pattern.find_first_of("/\\") != std::string::npos) patterns.push_back("*/" + pattern);
  return TPathPatterns(patterns);
}

// Locks the backup folders. Raises mig::ERunIsBusy.
std::vector<std::unique_ptr<win::TFileLock>> LockFolders(const std::vector<std::string>& undoFiles) {
  std::vector<std::unique_ptr<win::TFileLock>> locks;
  locks.reserve(undoFiles.size());
  for (const std::string& undoFile : undoFiles)
    locks.push_back(mig::LockRunFolder(rtl::ExtractFileDir(undoFile)));
  return locks;
}

mig::TRestorePlan MakePlan(const TCommandLine& line, const std::vector<std::string>& undoFiles) {
  mig::TRestorePlan plan;
  for (const std::string& undoFile : undoFiles) plan.Add(undoFile);
  if (!line.Only.empty()) {
    const TPathPatterns patterns = OnlyPatterns(line.Only);
    plan.KeepOnly([&](std::string_view original) { return patterns.Match(original); });
    if (plan.Lines().empty()) throw EUsage("No file of the undo file matches --only.");
  }
  plan.Check();
  const bool isForeign = std::all_of(plan.Lines().begin(), plan.Lines().end(), [](const TRestoreLine& each) {
    return each.Verdict == TRestoreVerdict::Foreign;
  });
  if (isForeign && !plan.Lines().empty() && line.Only.empty() && !line.Force)
    throw EUsage("\"" + undoFiles[0] + "\" is no undo file: no run can have written any of its lines.");
  return plan;
}

const char* NameOf(TRestoreVerdict verdict) {
  switch (verdict) {
    case TRestoreVerdict::Restorable:
      return "restore    ";
    case TRestoreVerdict::NoBackup:
      return "no backup  ";
    case TRestoreVerdict::Edited:
      return "edited     ";
    case TRestoreVerdict::Foreign:
      return "foreign    ";
  }
  return "";
}

int PrintPlan(const mig::TRestorePlan& plan) {
  for (const TRestoreLine& line : plan.Lines())
    PrintLine(NameOf(line.Verdict) + (line.Original.empty() ? line.Text : line.Original));
  return kExitOk;
}

// Prints every line that prevents the plan from being executed. Returns whether there is none. `force`
// accepts edited files and lines that no run can have written.
bool MayExecute(const mig::TRestorePlan& plan, bool force) {
  size_t missing = 0, refused = 0;
  for (const TRestoreLine& line : plan.Lines()) {
    if (line.Verdict == TRestoreVerdict::NoBackup) {
      Complain("There is no backup for this line of the undo file: " + line.Text);
      ++missing;
    } else if (line.Verdict == TRestoreVerdict::Edited && !force) {
      Complain("This file was edited after the run: " + line.Original);
      ++refused;
    } else if (line.Verdict == TRestoreVerdict::Foreign && !force) {
      Complain("No run can have written this line of the undo file: " + line.Text);
      ++refused;
    }
  }
  if (missing > 0)
    Note(win::CanMapDrives()
             ? "Nothing was restored. Were the backups moved, or was the run given --drive options that are "
               "missing here?"
             : "Nothing was restored. Were the backups moved?");
  if (missing == 0 && refused > 0)
    Note("Nothing was restored. --force restores these files, too; --only restores a part.");
  return missing + refused == 0;
}

}  // namespace

int RunRestore(const TCommandLine& line) {
  const std::vector<std::string> undoFiles = UndoFiles(line);
  if (line.List) return PrintPlan(MakePlan(line, undoFiles));
  const auto locks = LockFolders(undoFiles);
  const mig::TRestorePlan plan = MakePlan(line, undoFiles);
  if (!MayExecute(plan, line.Force))
    return PrintOutcome(false, mig::SRestoreSuccess, mig::SRestoreFailed, line.Quiet);
  CatchInterrupts();
  const int count = static_cast<int>(plan.Lines().size());
  const bool restored = plan.Execute(
      [&](int done, const TRestoreLine& file) {
        StopIfInterrupted(rtl::Format(
            "Stopped: %d of %d files are restored. Run the command again to restore all.", {done, count}));
        if (!line.Quiet) ShowProgress(done, count, file.Original);
      },
      Complain);
  return PrintOutcome(restored, mig::SRestoreSuccess, mig::SRestoreFailed, line.Quiet);
}

}  // namespace cli
