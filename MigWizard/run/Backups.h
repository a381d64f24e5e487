// Makes the backups of a run, a copy of each original before it is replaced, and records them.
//
// A strict run into a folder that holds the undo file of an earlier run makes its backups in a staging
// folder, so that nothing is lost if the run fails. They are moved to their places after the originals have
// been replaced.
#pragma once

#include <deque>
#include <string>

#include "MigWizard/run/FileVersion.h"
#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunFolders.h"
#include "MigWizard/run/RunHooks.h"
#include "MigWizard/run/UndoList.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/Exceptions.h"

namespace mig {

// Raised if a strict run ends before it replaces the first file because a backup is missing or not true.
class EBackupFailed : public rtl::Exception {
  using Exception::Exception;
};

class TBackups {
 public:
  // All arguments must outlive the object.
  TBackups(const TReplaceOptions& options, const TRunHooks& hooks, TWorkQueue& queue)
      : FOptions(options), FHooks(hooks), FQueue(queue) {}

  // Checks the existing backup folder for the undo file of an earlier run. Call before Add.
  void Prepare();

  // Adds a changed file to the undo list and pushes its backup to the queue, unless the file already has a
  // backup. `relPath` is the file's path below the scanned folder; empty in a project run, whose backup
  // folder is flat. `version` is the version of the file that was read.
  void Add(const std::string& fileName, const std::string& relPath, const TFileVersion& version);

  // Waits until all backups are made. Reports failed backups with OnWarning, in the order of the files. A
  // strict run raises EBackupFailed for the first of them and reports the others.
  void Wait();

  // Returns True if a backup was made.
  bool Any() const;
  // Returns the contents of the undo file.
  const TUndoList& UndoList() const { return FUndoList; }

  // --- For strict runs ---
  // Writes the journal and flushes it to the disk. Raises rtl::EFCreateError or rtl::EWriteError, also if the
  // undo file could not replace the journal later; no journal exists then.
  void WriteJournal() const;
  // Renames the journal to the undo file. On failure raises rtl::Exception and keeps the journal.
  void FinishJournal();
  // Deletes the backups that are still in the staging folder.
  void DeleteStaged();

 private:
  struct TBackup {
    std::string FileName;
    TFileVersion Version;
    std::string Made;   // full name of the copy
    std::string Place;  // full name of its final place
    bool Failed = false;
    std::string Reason;
  };

  void Make(TBackup& backup) const;

  const TReplaceOptions& FOptions;
  const TRunHooks& FHooks;
  TWorkQueue& FQueue;
  TFolderMaker FFolders;
  std::string FStagingDir;  // empty if the backups are made in their final places
  TUndoList FUndoList;
  TUndoList FJournal;            // the same with the names of the staged backups
  std::deque<TBackup> FBackups;  // in the order of the files; the queue's tasks hold references
};

}  // namespace mig
