// One replacement run: the walk over its files (Walk.h), and the last step, in which the changed versions are
// copied over the originals. The object lives as long as the run, so that no state carries over to the next.
#pragma once

#include <string>

#include "MigWizard/run/Backups.h"
#include "MigWizard/run/ChangedFiles.h"
#include "MigWizard/run/Walk.h"
#include "MigWizard/run/WorkQueue.h"

namespace mig {

class TRun {
 public:
  explicit TRun(const TRunContext& context);
  TRun(const TRun&) = delete;
  TRun& operator=(const TRun&) = delete;

  // Runs the replacement. Call once. Result and exceptions are those of TComponentReplacer::Replace.
  [[nodiscard]] bool Execute();

  // Runs everything before the last step, and writes nothing. Call once. The hooks get the results of the
  // conversion.
  void Preview();

 private:
  bool ConvertAndReplace();
  void PrepareBackupFolder();

  bool ReplaceOriginals(const std::string& tempDir);
  bool ReplaceWithJournal(const std::string& tempDir);
  // Writes everything to the disk. `replaced`: how many originals are replaced.
  void Flush(int replaced);
  void WriteUndoFile();

  const TReplaceOptions& FOptions;
  const TRunHooks& FHooks;
  TRunLock& FLock;
  TLogWriter& FLog;
  TChangedFiles FChanged;
  bool FHasJournal = false;
  TBackups FBackups;
  TWalk FWalk;
  TWorkQueue FQueue;  // destroyed first, because its tasks use the other members
};

}  // namespace mig
