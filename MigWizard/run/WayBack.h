// What a backup folder says about earlier runs, and how a strict run keeps clear of them.
//
//   options.BackupDir = ChooseBackupDir("C:\\App");  // C:\App\RBackup, or RBackup.2, ...
//   if (FindWayBack(userChoice) == TWayBack::UndoFile) AskTheUser();
//
// The way back from a run is its undo file with the backups that it lists. While a strict run replaces the
// originals, a journal takes the undo file's place: it has the same lines, is restored from in the same way,
// and becomes the undo file when the run ends. So a journal belongs to a run that did not end.
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

enum class TWayBack { None, UndoFile, Journal };

// Returns what the backup folder, a full Windows path, holds. A journal counts before an undo file; an undo
// file that lists nothing does not count. Raises rtl::EFOpenError if one of them cannot be looked at.
TWayBack FindWayBack(std::string_view backupDir);

// Returns the full name of the undo file or the journal of a backup folder.
std::string UndoFileOf(std::string_view backupDir);
std::string JournalOf(std::string_view backupDir);

// Returns the first of RBackup, RBackup.2, RBackup.3, ... under `base`, a full Windows path, that holds no way
// back. So repeated runs can be taken back one by one, the last one first.
std::string ChooseBackupDir(std::string_view base);
// Returns the first of `folder`, `folder`.2, `folder`.3, ... that holds no way back. Both raise as FindWayBack
// does.
std::string FreeBackupDir(const std::string& folder);

// A strict run was refused, and made nothing, because its backup folder holds the way back of an earlier run.
class EWayBack : public rtl::Exception {
 public:
  EWayBack(TWayBack kind, std::string_view backupDir);
  TWayBack Kind() const { return FKind; }
  const std::string& BackupDir() const { return FBackupDir; }

 private:
  TWayBack FKind;
  std::string FBackupDir;
};

// A strict run was refused, and made nothing, because another one is at work in one of its folders.
class ERunIsBusy : public rtl::Exception {
  using Exception::Exception;
};

// Holds the folders of a strict run, so that a second run in one of them is refused. Does nothing for others.
class TRunLock {
 public:
  // Locks the run's folder, and the backup folder if it exists. Raises ERunIsBusy if another run holds one of
  // them, and EWayBack if the backup folder may not be used.
  explicit TRunLock(const TReplaceOptions& options);
  ~TRunLock();
  TRunLock(const TRunLock&) = delete;
  TRunLock& operator=(const TRunLock&) = delete;

  // Locks the backup folder after it was created. Raises as the constructor does.
  void LockBackupFolder();

 private:
  std::unique_ptr<win::TFileLock> Lock(const std::string& folder) const;

  const TReplaceOptions& FOptions;
  std::unique_ptr<win::TFileLock> FRunFolder, FBackupFolder;
};

}  // namespace mig
