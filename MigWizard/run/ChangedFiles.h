// The files of which a run has changed versions, and their replacement.
#pragma once

#include <atomic>
#include <string>
#include <unordered_map>
#include <vector>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/FileVersion.h"
#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunErrors.h"
#include "MigWizard/run/RunHooks.h"

namespace mig {

class TWorkQueue;

class TChangedFiles {
 public:
  // Adds a file by its full name, with the version that was read. A file that is added again keeps its first
  // version.
  void Add(const std::string& fileName, const TFileVersion& version);

  bool Empty() const { return FNames.empty(); }
  // Returns the number of originals replaced so far.
  int Replaced() const { return FReplaced; }

  // Raises EFileEdited for the first file that was changed since it was read.
  void RequireUnchanged() const;

  // Copies the changed versions from the folder `tempDir` over the originals, as tasks of a queue that has no
  // other tasks. In a folder run, a failure keeps the remaining files of the same folder from being replaced.
  // With `options.Policy.Strict`, moves them where that is faster, replaces only contents, and fails for a
  // file that was edited since it was read. Reports every file that was not replaced with OnWarning, and
  // returns True if there is none.
  bool Replace(const std::string& tempDir, const TReplaceOptions& options, const TRunHooks& hooks,
               TWorkQueue& queue);

 private:
  struct TFile {
    explicit TFile(const TFileVersion& version) : Version(version) {}
    TFileVersion Version;
    std::atomic<bool> IsReplaced = false;
  };

  // Copies `source` over the original `target`. Returns an empty string, or the reason for the failure.
  std::string ReplaceOne(const std::string& source, const std::string& target, bool isStrict);
  void ReportOthers(const TCopyFailures& failures, const TRunHooks& hooks) const;

  std::vector<std::string> FNames;                // in the order in which they were added
  std::unordered_map<std::string, TFile> FFiles;  // by upper-cased full name
  std::atomic<int> FReplaced = 0;
};

}  // namespace mig
