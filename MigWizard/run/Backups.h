// The backups of a run: a copy of each file that changed, as it was.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunFolders.h"
#include "MigWizard/run/RunHooks.h"
#include "MigWizard/run/UndoList.h"
#include "MigWizard/run/WorkQueue.h"

namespace mig {

class TBackups {
 public:
  // All arguments must outlive the object.
  TBackups(const TReplaceOptions& options, const TRunHooks& hooks, TWorkQueue& queue)
      : FOptions(options), FHooks(hooks), FQueue(queue) {}

  // Pushes the backup of a changed file to the queue, unless it has one, and adds it to the undo list.
  // `relPath` is the file's path below the scanned folder; empty in a project run, whose backup folder is
  // flat.
  void Add(const std::string& fileName, const std::string& relPath);

  // Waits until all backups are made. Reports those that failed with OnWarning, in the order of the files.
  void Wait();

  const TUndoList& UndoList() const { return FUndoList; }

 private:
  struct TBackup {
    std::string FileName;
    bool Failed = false;
    uint32_t Error = 0;  // the reason
  };

  const TReplaceOptions& FOptions;
  const TRunHooks& FHooks;
  TWorkQueue& FQueue;
  TFolderMaker FFolders;
  TUndoList FUndoList;
  std::deque<TBackup> FBackups;  // in the order of the files; tasks of the queue hold references to them
};

}  // namespace mig
