// Finds out whether a backup folder undoes an earlier run, and keeps strict runs from destroying that.
//
//   options.BackupDir = ChooseBackupDir("C:\\App");  // C:\App\RBackup, or RBackup.2, ...
//   if (FindUndoState(userChoice) == TUndoState::UndoFile) AskTheUser();
//
// A run is undone with its undo file and the backups that it lists. While a strict run replaces the
// originals, it has a journal instead: a file with the same lines, which can be restored in the same way, and
// which is renamed to the undo file when the run ends. So a journal belongs to a run that did not end.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "MigWizard/run/ReplaceOptions.h"
#include "rtl/text/Exceptions.h"

namespace win {
class TFileLock;
}

namespace mig {

enum class TUndoState { None, UndoFile, Journal };

// Returns the state of the backup folder, a full Windows path. A journal takes precedence over an undo file;
// an empty undo file is ignored. Raises rtl::EFOpenError if one of them cannot be inspected.
TUndoState FindUndoState(std::string_view backupDir);

// Returns the full name of the undo file or the journal of a backup folder.
std::string UndoFileOf(std::string_view backupDir);
std::string JournalOf(std::string_view backupDir);

// Returns the first of RBackup, RBackup.2, RBackup.3, ... under `base`, a full Windows path, that holds
// neither undo file nor journal, so that repeated runs can be undone one by one, the last one first.
std::string ChooseBackupDir(std::string_view base);
// Returns the first of `folder`, `folder`.2, `folder`.3, ... that holds neither. Both raise what
// FindUndoState raises.
std::string FreeBackupDir(const std::string& folder);

// Raised if a strict run is refused, before it makes anything, because its backup folder holds the undo file
// or the journal of an earlier run.
class EBackupsExist : public rtl::Exception {
 public:
  EBackupsExist(TUndoState state, std::string_view backupDir);
  TUndoState State() const { return FState; }
  const std::string& BackupDir() const { return FBackupDir; }

 private:
  TUndoState FState;
  std::string FBackupDir;
};

// Raised if a strict run is refused, before it makes anything, because another run uses one of its folders.
class ERunIsBusy : public rtl::Exception {
  using Exception::Exception;
};

// Locks a folder, a full Windows path, as a strict run locks its folders. Raises ERunIsBusy if a run, or a
// restore, has locked it. Returns null if the folder does not exist, or if locking fails for another reason.
[[nodiscard]] std::unique_ptr<win::TFileLock> LockRunFolder(const std::string& folder);

// Locks the folders of a strict run, so that a second run in one of them is refused. Other runs lock nothing.
class TRunLock {
 public:
  // Locks the run's folder, and the backup folder if it exists. Raises ERunIsBusy if another run has locked
  // one of them, and EBackupsExist if the backup folder must not be used.
  explicit TRunLock(const TReplaceOptions& options);
  ~TRunLock();
  TRunLock(const TRunLock&) = delete;
  TRunLock& operator=(const TRunLock&) = delete;

  // Locks the backup folder after its creation. Raises the exceptions of the constructor.
  void LockBackupFolder();

 private:
  const TReplaceOptions& FOptions;
  std::unique_ptr<win::TFileLock> FRunFolder, FBackupFolder;
};

}  // namespace mig
