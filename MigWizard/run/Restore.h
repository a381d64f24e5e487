// Puts back the files that a run changed, from the undo file that the run left.
//
//   TRestorePlan plan;
//   plan.Add("C:\\App\\RBackup\\RExpert.reu");
//   const bool restored = plan.Execute(onProgress, onWarning);
//
// A plan can be looked at before it is executed: its lines say which file would be overwritten with which
// backup. Executing a plan changes neither the backups nor the undo file, so a restore can be repeated.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

// One line of an undo file. Both names are full Windows paths, as the undo file has them.
struct TRestoreLine {
  std::string Original;  // the file to overwrite; empty if the line has no "="
  std::string Backup;    // the file to copy over it; empty if the line has no "="
  std::string Text;      // the whole line
};

class TRestorePlan {
 public:
  // Called before each line is copied. `done` counts the lines that were copied, from 0. An exception ends
  // the restore.
  using TProgress = std::function<void(int done, const TRestoreLine& line)>;
  // Called with a line of text for the user about what keeps the restore from succeeding.
  using TWarning = std::function<void(std::string_view message)>;

  // Appends the lines of the undo file, a full Windows path. If several lines name one file, the backup of
  // the first counts for all of them. Raises rtl::EFOpenError or rtl::EReadError if the file cannot be read;
  // the plan is unchanged then.
  void Add(std::string_view undoFile);

  // In the order in which they are executed.
  const std::vector<TRestoreLine>& Lines() const { return FLines; }

  // Copies every backup over its original, in order. Returns False
  // - if there are no lines or a backup is missing: then no file was touched;
  // - if a copy failed: then the lines before it are restored, and the others are not.
  // Both functions may be empty.
  [[nodiscard]] bool Execute(const TProgress& onProgress, const TWarning& onWarning) const;

 private:
  std::vector<TRestoreLine> FLines;
};

}  // namespace mig
