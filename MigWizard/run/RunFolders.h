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

// Creates the backup folder of `options` with the folders above it. Raises rtl::EFCreateError if it cannot be
// created, also if a file has its name; the reason goes to OnWarning.
void CreateBackupFolder(const TReplaceOptions& options, const TRunHooks& hooks);

// A temporary folder that lives as long as the object.
class TTempFolder {
 public:
  // Raises rtl::EFCreateError if no folder can be created; the reason goes to OnWarning. Folders of stopped
  // runs that a strict run steps over are reported with OnWarning. `queue` must outlive the folder, which is
  // deleted by both of its threads.
  TTempFolder(const TReplaceOptions& options, const TRunHooks& hooks, TWorkQueue& queue);
  // Cancels the queue, and deletes the folder with everything in it, as far as that is possible.
  ~TTempFolder();
  TTempFolder(const TTempFolder&) = delete;
  TTempFolder& operator=(const TTempFolder&) = delete;

  // Full Windows path.
  const std::string& Path() const { return FPath; }

 private:
  TWorkQueue& FQueue;
  std::string FPath;
  std::unique_ptr<win::TFileLock> FLock;  // tells other runs that this one is at work
};

// Creates folders, each only once however many files need it.
class TFolderMaker {
 public:
  // Creates the folder with the folders above it. A failure is not reported: whatever is written there fails.
  void Need(const std::string& folder);

 private:
  std::unordered_set<std::string> FMade;
};

}  // namespace mig
