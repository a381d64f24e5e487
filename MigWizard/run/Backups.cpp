#include "MigWizard/run/Backups.h"

#include <algorithm>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/UndoState.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

constexpr char kStagingFolder[] = "RExpert.new";
constexpr char kNoBackup[] = "No backup of \"%s\" could be made. %s";
constexpr char kNotTrue[] = "The copy differs from what was read.";

// The limit for pending backups while the walk continues.
constexpr size_t kPendingBackups = 32;

std::string LastReason() {
  return win::SysErrorMessage(win::GetLastError());
}

}  // namespace

void TBackups::Prepare() {
  if (!FOptions.Policy.Strict || FindUndoState(FOptions.BackupDir) == TUndoState::None) return;
  FStagingDir = JoinPath(FOptions.BackupDir, kStagingFolder);
  FFolders.Ensure(FStagingDir);
}

void TBackups::Add(const std::string& fileName, const std::string& relPath, const TFileVersion& version) {
  std::string place = relPath;
  if (FOptions.Dest == sdProject) place = rtl::ExtractFileName(fileName);
  place = BackupFileName(place);
  const std::string backupName = JoinPath(FOptions.BackupDir, place);
  const std::string made = FStagingDir.empty() ? backupName : JoinPath(FStagingDir, place);
  if (!FUndoList.Add(fileName, backupName)) return;  // several units name this form
  FJournal.Add(fileName, made);
  if (FOptions.Dest == sdFolder) FFolders.Ensure(rtl::ExtractFileDir(made));
  TBackup& backup = FBackups.emplace_back(TBackup{fileName, version, made, backupName, false, {}});
  FQueue.Push([this, &backup] { Make(backup); });
  FQueue.WaitForRoom(kPendingBackups);
}

void TBackups::Make(TBackup& backup) const {
  backup.Failed = !win::CopyToOwnFile(backup.FileName, backup.Made);
  if (!backup.Failed && FOptions.Policy.Strict)
    backup.Failed = !IsTrueBackup(backup.FileName, backup.Made, backup.Version);
  if (!backup.Failed) return;
  backup.Reason = win::GetLastError() == win::ERROR_FILE_INVALID ? kNotTrue : LastReason();
}

void TBackups::Wait() {
  FQueue.Wait();
  std::string first;
  for (const TBackup& backup : FBackups) {
    if (!backup.Failed) continue;
    const std::string message = rtl::Format(kNoBackup, {backup.FileName, backup.Reason});
    if (first.empty() && FOptions.Policy.Strict) {
      first = message;
    } else {
      FHooks.Warn(message);
    }
  }
  if (!first.empty()) throw EBackupFailed(first + " No file was replaced.");
}

bool TBackups::Any() const {
  return std::any_of(FBackups.begin(), FBackups.end(), [](const TBackup& backup) { return !backup.Failed; });
}

void TBackups::WriteJournal() const {
  const std::string undoFile = UndoFileOf(FOptions.BackupDir);
  const std::string journal = JournalOf(FOptions.BackupDir);
  const uint32_t attributes = win::FileSystem().GetFileAttributesA(undoFile);
  if (attributes != win::INVALID_FILE_ATTRIBUTES &&
      (attributes & (win::FILE_ATTRIBUTE_DIRECTORY | win::FILE_ATTRIBUTE_READONLY)) != 0)
    throw rtl::EFCreateError(rtl::Format("Cannot create file \"%s\". %s",
                                         {undoFile, win::SysErrorMessage(win::ERROR_ACCESS_DENIED)}));
  try {
    FJournal.SaveToDisk(journal);
  } catch (...) {
    rtl::DeleteFile(journal);
    throw;
  }
}

void TBackups::FinishJournal() {
  const std::string undoFile = UndoFileOf(FOptions.BackupDir);
  const std::string journal = JournalOf(FOptions.BackupDir);
  if (FStagingDir.empty()) return MoveToDisk(journal, undoFile);
  for (const TBackup& backup : FBackups) {
    FFolders.Ensure(rtl::ExtractFileDir(backup.Place));
    if (!win::CopyToOwnFile(backup.Made, backup.Place))
      throw EBackupFailed(rtl::Format(kNoBackup, {backup.FileName, LastReason()}));
  }
  if (!win::FileSystem().FlushWritten())
    throw EBackupFailed(rtl::Format("The backups cannot be written to the disk. %s", {LastReason()}));
  FUndoList.SaveToDisk(undoFile);
  rtl::DeleteFile(journal);
  (void)win::FlushFolder(FOptions.BackupDir);
  DeleteStaged();
}

void TBackups::DeleteStaged() {
  if (!FStagingDir.empty()) DeleteFolder(FStagingDir);
}

}  // namespace mig
