#include "MigWizard/run/Run.h"

#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/UndoState.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {

TRun::TRun(const TRunContext& context)
    : FOptions(context.Options),
      FHooks(context.Hooks),
      FLock(context.Lock),
      FLog(context.Log),
      FBackups(FOptions, FHooks, FQueue),
      FWalk(context, FChanged, FBackups, FQueue) {}

bool TRun::Execute() {
  FLog.WriteLine(SInitUnitList);
  FWalk.FindUnits();
  try {
    return ConvertAndReplace();
  } catch (...) {
    // The journal refers to the staged backups.
    if (!FHasJournal) FBackups.DeleteStaged();
    throw;
  }
}

bool TRun::ConvertAndReplace() {
  if (FOptions.MakeBackup) PrepareBackupFolder();
  FLog.WriteLine(SAllocTempFolder);
  const TTempFolder temp(FOptions, FHooks, FQueue);
  FWalk.Execute(temp.Path());
  const bool succeeded = ReplaceOriginals(temp.Path());
  FLog.WriteLine(SRemoveTempFolder);
  return succeeded;
}

void TRun::PrepareBackupFolder() {
  FLog.WriteLine(SCreateBackupFolder);
  CreateBackupFolder(FOptions, FHooks);
  FLock.LockBackupFolder();
  FBackups.Prepare();
}

void TRun::Preview() {
  FWalk.FindUnits();
  FWalk.Preview();
}

bool TRun::ReplaceOriginals(const std::string& tempDir) {
  if (FWalk.ChangedFiles() > 0) {
    FLog.WriteLine(SReplacingOriginals);
    Flush(0);
  }
  if (FOptions.Policy.Strict && !FChanged.Empty()) return ReplaceWithJournal(tempDir);
  const bool succeeded = FChanged.Replace(tempDir, FOptions, FHooks, FQueue);
  if (FOptions.MakeBackup) WriteUndoFile();
  return succeeded;
}

void TRun::Flush(int replaced) {
  const auto report = [&] { FHooks.ReportReplacing(TRunPhase::Flushing, replaced, FWalk.ChangedFiles()); };
  report();
  FQueue.RunOnWorker(
      [] {
        if (win::FileSystem().FlushWritten()) return;
        throw rtl::EWriteError(rtl::Format("Cannot write the changed files to the disk. %s",
                                           {win::SysErrorMessage(win::GetLastError())}));
      },
      report);
}

// The journal and the backups are on the disk before the first original is replaced. The journal remains
// until it is renamed to the undo file, however the run ends.
bool TRun::ReplaceWithJournal(const std::string& tempDir) {
  FChanged.RequireUnchanged();
  if (FOptions.MakeBackup) {
    FBackups.WriteJournal();
    FHasJournal = true;
  }
  bool succeeded = false;
  try {
    succeeded = FChanged.Replace(tempDir, FOptions, FHooks, FQueue);
    Flush(FChanged.Replaced());
    if (FHasJournal) FBackups.FinishJournal();
  } catch (...) {
    if (FHasJournal)
      FHooks.Warn(rtl::Format("The run ended while it replaced files. The journal \"%s\" restores them.",
                              {JournalOf(FOptions.BackupDir)}));
    throw;
  }
  if (FHasJournal) FLog.WriteLine(rtl::Format(SBackupFile, {UndoFileOf(FOptions.BackupDir)}));
  return succeeded;
}

// If the run changed nothing, keeps the undo file of an earlier run.
void TRun::WriteUndoFile() {
  const std::string undoName = UndoFileOf(FOptions.BackupDir);
  const TUndoList& list = FBackups.UndoList();
  try {
    if (!list.Empty() || !rtl::FileExists(undoName)) list.Save(undoName);
  } catch (const rtl::EStreamError&) {
    if (FChanged.Replaced() > 0)
      FHooks.Warn(
          FBackups.Any()
              ? rtl::Format("Files are replaced. Their backups are in \"%s\", but no undo file lists them.",
                            {FOptions.BackupDir})
              : "Files are replaced, and there is no backup of any of them.");
    throw;
  }
  FLog.WriteLine(rtl::Format(SBackupFile, {undoName}));
  if (const std::string& line = list.FirstAmbiguousLine(); !line.empty())
    FHooks.Warn(rtl::Format(
        "The undo file cannot restore files while it lists a name with \"=\" or a line end in it: %s",
        {line}));
}

}  // namespace mig
