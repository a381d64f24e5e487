// Restores the files that a run changed, from the run's undo file, or from its journal if the run did not
// end.
//
//   TRestorePlan plan;
//   plan.Add("C:\\App\\RBackup\\RExpert.reu");
//   plan.Check();
//   if (ShowVerdicts(plan.Lines())) restored = plan.Execute(onProgress, onWarning);
//
// A plan can be inspected before it is executed: its lines tell which backup overwrites which file, and Check
// finds lines that would lose data. Executing a plan changes neither backups nor undo files, so a restore can
// be repeated.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

enum class TRestoreVerdict {
  Restorable,
  // The backup does not exist. The backups may have been moved, or a drive may be mapped to another folder.
  NoBackup,
  // The file was written after the run and differs from its backup: later changes would be lost.
  Edited,
  // The line cannot be from a run: the original is no unit, project or form, or the backup is not named like
  // the backup of the original, or exists outside the folder of the undo file.
  Foreign,
};

// One line of an undo file. The names are full Windows paths, as the undo file has them.
struct TRestoreLine {
  std::string Original;  // the file to overwrite; empty if the line has no "="
  std::string Backup;    // the file to copy over it; empty if the line has no "="
  std::string Text;      // the whole line
  std::string UndoFile;  // the file that contains the line
  TRestoreVerdict Verdict = TRestoreVerdict::Restorable;
};

class TRestorePlan {
 public:
  // Called before each line is copied. `done` is the number of lines copied, from 0. An exception ends the
  // restore.
  using TProgress = std::function<void(int done, const TRestoreLine& line)>;
  // Called with a line of text for the user about a problem that makes the restore fail.
  using TWarning = std::function<void(std::string_view message)>;

  // Appends the lines of an undo file or a journal, a full Windows path. Add the last run first, because runs
  // are undone in the order in which they are added. If several lines of a file name one original, the backup
  // of the first one is used for all of them. On failure raises rtl::EFOpenError or rtl::EReadError, and the
  // plan is unchanged.
  void Add(std::string_view undoFile);

  // Removes the lines for whose original `isWanted` returns False.
  void KeepOnly(const std::function<bool(std::string_view original)>& isWanted);

  // Sets the verdict of each line. If a line of a later run comes first, compares with its backup, which the
  // file will equal by then. Changes no file. Raises rtl::EStreamError if a file to be compared cannot be
  // read.
  void Check();

  // Returns the lines in the order of execution.
  const std::vector<TRestoreLine>& Lines() const { return FLines; }

  // Copies every backup over its original, in order, flushes the files to the disk, and deletes the journals
  // whose lines were all restored. Ignores verdicts. Returns False
  // - if there are no lines or a backup is missing: no file was changed;
  // - if a copy failed: the lines before it are restored, and the others are not;
  // - if the files could not be flushed to the disk, or a journal could not be deleted.
  // All functions may be empty. `onFlushing` is called about 20 times a second while the files are flushed,
  // and must not raise.
  [[nodiscard]] bool Execute(const TProgress& onProgress, const TWarning& onWarning,
                             const std::function<void()>& onFlushing = {}) const;

 private:
  bool CopyAll(const TProgress& onProgress, const TWarning& onWarning) const;
  static bool Flush(const TWarning& onWarning, const std::function<void()>& onFlushing);
  bool DeleteJournals(const TWarning& onWarning) const;

  std::vector<TRestoreLine> FLines;
  std::vector<std::string> FJournals;  // those from which no line was removed
};

}  // namespace mig
