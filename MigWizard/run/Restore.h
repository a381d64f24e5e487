// Puts back the files that a run changed, from the undo file that the run left, or from its journal if the
// run did not end.
//
//   TRestorePlan plan;
//   plan.Add("C:\\App\\RBackup\\RExpert.reu");
//   plan.Check();
//   if (plan.IsSafe()) restored = plan.Execute(onProgress, onWarning);
//
// A plan can be looked at before it is executed: its lines say which file is overwritten with which backup,
// and Check finds those where that would lose something. Executing a plan changes neither backups nor undo
// files, so a restore can be repeated.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

enum class TRestoreVerdict {
  Restorable,
  // There is no file of the backup's name.
  NoBackup,
  // The file was written after the run, and differs from its backup: what was written would be lost.
  Edited,
  // No run can have written the line: the original is no unit, project or form, the backup is not named like
  // the backup of the original, or it is not below the folder of the undo file.
  Foreign,
};

// One line of an undo file. The names are full Windows paths, as the undo file has them.
struct TRestoreLine {
  std::string Original;  // the file to overwrite; empty if the line has no "="
  std::string Backup;    // the file to copy over it; empty if the line has no "="
  std::string Text;      // the whole line
  std::string UndoFile;  // the file that has the line
  TRestoreVerdict Verdict = TRestoreVerdict::Restorable;
};

class TRestorePlan {
 public:
  // Called before each line is copied. `done` counts the lines that were copied, from 0. An exception ends
  // the restore.
  using TProgress = std::function<void(int done, const TRestoreLine& line)>;
  // Called with a line of text for the user about what keeps the restore from succeeding.
  using TWarning = std::function<void(std::string_view message)>;

  // Appends the lines of an undo file or a journal, a full Windows path. Runs are taken back in the order in
  // which they are added: add the last run first. If several lines of a file name one original, the backup of
  // the first counts for all of them. Raises rtl::EFOpenError or rtl::EReadError if the file cannot be read;
  // the plan is unchanged then.
  void Add(std::string_view undoFile);

  // Removes the lines whose original `isWanted` refuses.
  void KeepOnly(const std::function<bool(std::string_view original)>& isWanted);

  // Gives each line its verdict. Where a line of a later run comes first, its backup is what the file will
  // be by then. Changes no file. Raises rtl::EStreamError if a file has to be compared and cannot be read.
  void Check();
  // Returns whether every line is restorable. Without Check all of them are.
  bool IsSafe() const;

  // In the order in which they are executed.
  const std::vector<TRestoreLine>& Lines() const { return FLines; }

  // Copies every backup over its original, in order, brings them to the disk, and deletes the journals all of
  // whose lines were restored. Verdicts are not looked at. Returns False
  // - if there are no lines or a backup is missing: then no file was touched;
  // - if a copy failed: then the lines before it are restored, and the others are not;
  // - if the files could not be brought to the disk, or a journal could not be deleted.
  // Both functions may be empty.
  [[nodiscard]] bool Execute(const TProgress& onProgress, const TWarning& onWarning) const;

 private:
  bool CopyAll(const TProgress& onProgress, const TWarning& onWarning) const;
  bool DeleteJournals(const TWarning& onWarning) const;

  std::vector<TRestoreLine> FLines;
  std::vector<std::string> FJournals;  // those of which no line was removed
};

}  // namespace mig
