#include "MigWizard/run/Backups.h"

#include "MigWizard/run/FileUtils.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

// Backups that may wait while the walk goes on.
constexpr size_t kPendingBackups = 32;

// Overwrites the backup of an earlier run, also if it is read-only because its original was.
bool CopyBackup(const std::string& fileName, const std::string& backupName) {
  if (win::CopyFileA(fileName, backupName, false)) return true;
  return rtl::FileExists(backupName) && win::FileSystem().CopyPermissions(fileName, backupName) &&
         win::CopyFileA(fileName, backupName, false);
}

}  // namespace

void TBackups::Add(const std::string& fileName, const std::string& relPath) {
  std::string backupName;
  if (FOptions.Dest == sdFolder) {
    FFolders.Need(JoinPath(FOptions.BackupDir, rtl::ExtractFileDir(relPath)));
    backupName = BackupFileName(JoinPath(FOptions.BackupDir, relPath));
  } else {
    backupName = JoinPath(FOptions.BackupDir, rtl::ExtractFileName(BackupFileName(fileName)));
  }
  if (!FUndoList.Add(fileName, backupName)) return;  // two units name this form
  TBackup& backup = FBackups.emplace_back(TBackup{fileName});
  FQueue.Push([&backup, backupName] {
    backup.Failed = !CopyBackup(backup.FileName, backupName);
    if (backup.Failed) backup.Error = win::GetLastError();
  });
  FQueue.WaitForRoom(kPendingBackups);
}

void TBackups::Wait() {
  FQueue.Wait();
  for (const TBackup& backup : FBackups) {
    if (!backup.Failed) continue;
    FHooks.Warn(rtl::Format("No backup of \"%s\" could be made. %s",
                            {backup.FileName, win::SysErrorMessage(backup.Error)}));
  }
}

}  // namespace mig
