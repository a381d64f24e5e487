#include "MigWizard/run/RunFolders.h"

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/LeftOverFolders.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

constexpr char kTempPrefix[] = "$DS";

std::string LastReason() {
  return win::SysErrorMessage(win::GetLastError());
}

}  // namespace

void CreateBackupFolder(const TReplaceOptions& options, const TRunHooks& hooks) {
  // ForceFolders accepts a file with that name, which cannot hold backups.
  if (ForceFolders(options.BackupDir) && rtl::DirectoryExists(options.BackupDir)) return;
  hooks.Warn(rtl::Format("The backup folder \"%s\" cannot be made. %s", {options.BackupDir, LastReason()}));
  throw rtl::EFCreateError(SCannotCreateDir);
}

TTempFolder::TTempFolder(const TReplaceOptions& options, const TRunHooks& hooks, TWorkQueue& queue)
    : FHooks(hooks), FQueue(queue) {
  std::vector<std::string> taken;
  const bool isStrict = options.Policy.Strict;
  FPath = isStrict ? CreateTempFolder(kTempPrefix, 1, taken) : CreateTempFolder(kTempPrefix, 1);
  if (FPath.empty()) {
    hooks.Warn(
        rtl::Format("No temporary folder can be made in \"%s\". %s", {win::GetTempPathA(), LastReason()}));
    throw rtl::EFCreateError(SCannotCreateDir);
  }
  try {
    if (isStrict) FLock = win::LockFolder(FPath);
    if (const std::string leftOver = DescribeLeftOverFolders(taken); !leftOver.empty()) hooks.Warn(leftOver);
  } catch (...) {
    rtl::RemoveDir(FPath);
    throw;
  }
}

TTempFolder::~TTempFolder() {
  try {
    FQueue.Cancel();
    const auto report = [this] { FHooks.ReportReplacing(TRunPhase::Removing, 0, 0); };
    report();
    FQueue.RunOnWorker([this] { DeleteFolder(FPath); }, report);
  } catch (...) {  // the rest of the folder remains
  }
}

void TFolderMaker::Ensure(const std::string& folder) {
  if (!FMade.contains(folder) && ForceFolders(folder)) FMade.insert(folder);
}

}  // namespace mig
