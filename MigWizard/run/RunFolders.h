// The folders of a run: the backup folder, and the temporary folder for the changed files.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunHooks.h"

namespace win {
class TFileLock;
}

namespace mig {

class TWorkQueue;

// Creates the backup folder of `options` and its parents. On failure, also if a file has its name, reports
// the reason with OnWarning and raises rtl::EFCreateError.
void CreateBackupFolder(const TReplaceOptions& options, const TRunHooks& hooks);

// A temporary folder with the lifetime of the object.
class TTempFolder {
 public:
  // On failure reports the reason with OnWarning and raises rtl::EFCreateError. A strict run also reports the
  // folders of killed runs that it skips. `hooks` and `queue` must outlive the object.
  TTempFolder(const TReplaceOptions& options, const TRunHooks& hooks, TWorkQueue& queue);
  // Cancels the queue and deletes the folder with everything in it, as far as possible. The folder may be on
  // a slow file system, so the worker deletes it, and this thread reports TRunPhase::Removing meanwhile.
  ~TTempFolder();
  TTempFolder(const TTempFolder&) = delete;
  TTempFolder& operator=(const TTempFolder&) = delete;

  // Returns the full Windows path.
  const std::string& Path() const { return FPath; }

 private:
  const TRunHooks& FHooks;
  TWorkQueue& FQueue;
  std::string FPath;
  std::unique_ptr<win::TFileLock> FLock;  // shows other runs that this one is active
};

// Creates folders, each only once.
class TFolderMaker {
 public:
  // Creates the folder and its parents. Failures are not reported, because writing to the folder fails then.
  void Ensure(const std::string& folder);

 private:
  std::unordered_set<std::string> FMade;
};

}  // namespace mig
