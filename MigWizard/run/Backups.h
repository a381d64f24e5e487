// The backups of a run: a copy of each file that changed, as it was, and the record of them.
//
// A strict run into a folder with the undo file of an earlier run makes its backups in a folder of their own,
// so that nothing is lost if it fails. They take their places when the originals have been replaced.
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

// A strict run ended before it replaced the first file, because a file has no backup, or none that is true.
class EBackupFailed : public rtl::Exception {
  using Exception::Exception;
};

class TBackups {
 public:
  // All arguments must outlive the object.
  TBackups(const TReplaceOptions& options, const TRunHooks& hooks, TWorkQueue& queue)
      : FOptions(options), FHooks(hooks), FQueue(queue) {}

  // Looks at the backup folder, which exists, for the undo file of an earlier run. Call before Add.
  void Prepare();

  // Pushes the backup of a changed file to the queue, unless it has one, and adds it to the undo list.
  // `relPath` is the file's path below the scanned folder; empty in a project run, whose backup folder is
  // flat. `version` is the file as it was read.
  void Add(const std::string& fileName, const std::string& relPath, const TFileVersion& version);

  // Waits until all backups are made. Reports those that failed with OnWarning, in the order of the files; a
  // strict run raises EBackupFailed for the first one and reports the others.
  void Wait();

  // Returns True if a backup was made.
  bool Any() const;
  // What the undo file is to say.
  const TUndoList& UndoList() const { return FUndoList; }

  // --- For strict runs ---
  // Writes the journal and brings it to the disk. Raises rtl::EFCreateError or rtl::EWriteError, also if the
  // undo file could not take its place later; there is no journal then.
  void WriteJournal() const;
  // Turns the journal into the undo file. Raises rtl::Exception; the journal remains then.
  void FinishJournal();
  // Deletes the backups that are not in their places.
  void DeleteStaged();

 private:
  struct TBackup {
    std::string FileName;
    TFileVersion Version;
    std::string Made;   // full name of the copy
    std::string Place;  // full name that it gets in the end
    bool Failed = false;
    std::string Reason;
  };

  void Make(TBackup& backup) const;

  const TReplaceOptions& FOptions;
  const TRunHooks& FHooks;
  TWorkQueue& FQueue;
  TFolderMaker FFolders;
  std::string FStagingDir;  // empty if the backups are made in their places
  TUndoList FUndoList;
  TUndoList FJournal;            // the same with the names under which the backups were made
  std::deque<TBackup> FBackups;  // in the order of the files; tasks of the queue hold references to them
};

}  // namespace mig
