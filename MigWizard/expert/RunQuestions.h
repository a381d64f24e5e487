// The questions before a run or a restore. Each one is asked before any file is touched. Where the front end
// cannot ask (rtl::IFrontEnd::Ask), the answer is the one that loses nothing.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/Restore.h"
#include "MigWizard/run/RunErrors.h"

namespace mig {

enum class TBackupAnswer {
  Cancel,
  Run,             // with the options as they are now
  RestoreJournal,  // instead of running
};

// Looks for the undo file or the journal of an earlier run in the backup folder of the options, and for
// journals in the default backup folders under `base`, the folder of the run. Asks if there is one. Changes
// Options.BackupDir or Options.Policy as the user wishes. For RestoreJournal, `journal` receives the full
// name of the journal.
TBackupAnswer AskAboutBackups(TReplaceOptions& options, const std::string& base, std::string& journal);

// Shows the missing files of the project, one line each, and asks whether to continue. Returns False if the
// user cancels the run.
bool AskAboutMissingFiles(const std::vector<std::string>& missing, const std::string& title);

// Asks after a run that ended because the contents of a file cannot be converted. Returns True to run again
// without such files, False to end, or nullopt if the front end cannot ask.
std::optional<bool> AskToLeaveOut(const EFileConversion& error, const std::string& title);

// Makes the plan of a restore, and asks about files that were edited since the run and about lines that no
// run can have written.
//
//   TRestoreQuestion question(undoFile, title);
//   if (question.Ask()) restored = replacer.Restore(question.Plan());
class TRestoreQuestion {
 public:
  TRestoreQuestion(std::string_view undoFile, std::string_view title) : FUndoFile(undoFile), FTitle(title) {}

  // Reads the undo file and checks its lines. Asks about those with which a restore would lose data, unless
  // the last call has asked about the same ones. Returns False if the user cancels. Raises rtl::EStreamError
  // if the undo file, or a file to be compared, cannot be read.
  [[nodiscard]] bool Ask();

  // Returns the lines to restore. Valid after Ask has returned True.
  const TRestorePlan& Plan() const { return FPlan; }
  // Returns the lines that are not restored, as messages for the user.
  const std::vector<std::string>& LeftOut() const { return FLeftOut; }

 private:
  enum class TAnswer { None, Rest, All };
  [[nodiscard]] bool AskUser(const std::vector<std::string>& lines, size_t rest, bool canRestoreAll);

  std::string FUndoFile;
  std::string FTitle;
  TRestorePlan FPlan;
  TAnswer FAnswer = TAnswer::None;
  std::vector<std::string> FAnswered;  // the lines of the last answer
  std::vector<std::string> FLeftOut;
};

}  // namespace mig
