#include "MigWizard/run/UndoState.h"

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/UnitList.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

// Returns True if the file that could not be inspected does not exist. Raises for every other reason, because
// the run must not guess whether an earlier run can be undone.
bool IsMissing(const std::string& fileName) {
  const uint32_t error = win::GetLastError();
  if (error == win::ERROR_FILE_NOT_FOUND || error == win::ERROR_PATH_NOT_FOUND) return true;
  throw rtl::EFOpenError(rtl::Format("Cannot open file \"%s\". %s", {fileName, win::SysErrorMessage(error)}));
}

constexpr char kJournalFound[] =
    "A run was interrupted while it replaced files; their backups are in \"%s\". Restore them before the "
    "next "
    "run.";
constexpr char kUndoFileFound[] =
    "The backup folder \"%s\" holds the undo file of an earlier run, which this run would overwrite.";

bool IsSameFolder(const std::string& left, const std::string& right) {
  const auto spelled = [](const std::string& folder) {
    return win::UpperFileName(JoinPath(win::FileSystem().GetLongPathNameA(ResolveDots(folder)), ""));
  };
  return spelled(left) == spelled(right);
}

}  // namespace

TUndoState FindUndoState(std::string_view backupDir) {
  const std::string journal = JournalOf(backupDir);
  if (win::FileSystem().GetFileAttributesA(journal) != win::INVALID_FILE_ATTRIBUTES || !IsMissing(journal))
    return TUndoState::Journal;
  const std::string undoFile = UndoFileOf(backupDir);
  const auto stamp = win::GetFileStamp(undoFile);
  const bool counts = stamp ? stamp->Size > 0 : !IsMissing(undoFile);
  return counts ? TUndoState::UndoFile : TUndoState::None;
}

std::string UndoFileOf(std::string_view backupDir) {
  return JoinPath(backupDir, SUndoFileName);
}

std::string JournalOf(std::string_view backupDir) {
  return JoinPath(backupDir, SJournalFileName);
}

std::string ChooseBackupDir(std::string_view base) {
  return FreeBackupDir(JoinPath(base, SBackupFolderName));
}

std::string FreeBackupDir(const std::string& folder) {
  std::string free = folder;
  for (int number = 2; FindUndoState(free) != TUndoState::None; ++number)
    free = folder + "." + std::to_string(number);
  return free;
}

EBackupsExist::EBackupsExist(TUndoState state, std::string_view backupDir)
    : Exception(rtl::Format(state == TUndoState::Journal ? kJournalFound : kUndoFileFound, {backupDir})),
      FState(state),
      FBackupDir(backupDir) {}

TRunLock::TRunLock(const TReplaceOptions& options) : FOptions(options) {
  if (!FOptions.Policy.Strict) return;
  FRunFolder = LockRunFolder(RunFolder(FOptions));
  LockBackupFolder();
}

TRunLock::~TRunLock() = default;

void TRunLock::LockBackupFolder() {
  if (!FOptions.Policy.Strict || !FOptions.MakeBackup || FBackupFolder) return;
  if (!IsSameFolder(FOptions.BackupDir, RunFolder(FOptions)))
    FBackupFolder = LockRunFolder(FOptions.BackupDir);
  const TUndoState found = FindUndoState(FOptions.BackupDir);
  if (found == TUndoState::Journal || (found == TUndoState::UndoFile && !FOptions.Policy.OverwriteBackups))
    throw EBackupsExist(found, FOptions.BackupDir);
}

std::unique_ptr<win::TFileLock> LockRunFolder(const std::string& folder) {
  auto lock = win::LockFolder(folder);
  if (!lock && win::GetLastError() == win::ERROR_SHARING_VIOLATION)
    throw ERunIsBusy(rtl::Format("Another run is using the folder \"%s\".", {folder}));
  return lock;
}

}  // namespace mig
