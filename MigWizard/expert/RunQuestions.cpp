#include "MigWizard/expert/RunQuestions.h"

#include <algorithm>

#include "MigWizard/run/UndoFiles.h"
#include "MigWizard/run/UndoState.h"
#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

std::string Counted(size_t count, const char* one, const char* many) {
  return count == 1 ? std::string("One ") + one : std::to_string(count) + " " + many;
}

// Returns the backup folder of a run that did not end, or an empty string.
std::string FindInterruptedRun(const TReplaceOptions& options, const std::string& base) {
  if (options.MakeBackup && FindUndoState(options.BackupDir) == TUndoState::Journal) return options.BackupDir;
  for (const std::string& undoFile : FindUndoFiles(base)) {
    std::string folder = rtl::ExtractFileDir(undoFile);
    if (FindUndoState(folder) == TUndoState::Journal) return folder;
  }
  return {};
}

TBackupAnswer AskAboutJournal(const std::string& folder, const std::string& title, std::string& journal) {
  const EBackupsExist reason(TUndoState::Journal, folder);
  const std::optional<int> answer =
      rtl::Application().Ask({.Caption = title,
                              .Text = reason.what(),
                              .Flags = rtl::MB_ICONERROR,
                              .Reasons = {"Restore Now undoes the interrupted run. Cancel changes nothing."},
                              .Buttons = {"&Restore Now", "Cancel"},
                              .Cancel = 1});
  if (!answer) rtl::Application().MessageBox(reason.what(), title, rtl::MB_ICONERROR);
  journal = JournalOf(folder);
  return answer == 0 ? TBackupAnswer::RestoreJournal : TBackupAnswer::Cancel;
}

std::string MessageOf(const TRestoreLine& line) {
  switch (line.Verdict) {
    case TRestoreVerdict::NoBackup:
      return "There is no backup for this line of the undo file: " + line.Text;
    case TRestoreVerdict::Edited:
      return "This file was edited after the run: " + line.Original;
    case TRestoreVerdict::Foreign:
      return "No run can have written this line of the undo file: " + line.Text;
    case TRestoreVerdict::Restorable:
      break;
  }
  return {};
}

size_t CountOf(const TRestorePlan& plan, TRestoreVerdict verdict) {
  return static_cast<size_t>(
      std::count_if(plan.Lines().begin(), plan.Lines().end(),
                    [verdict](const TRestoreLine& line) { return line.Verdict == verdict; }));
}

}  // namespace

TBackupAnswer AskAboutBackups(TReplaceOptions& options, const std::string& base, std::string& journal) {
  const std::string title = options.GetTitle();
  const std::string interrupted = FindInterruptedRun(options, base);
  if (!interrupted.empty()) return AskAboutJournal(interrupted, title, journal);
  if (!options.MakeBackup || FindUndoState(options.BackupDir) == TUndoState::None) return TBackupAnswer::Run;
  const EBackupsExist reason(TUndoState::UndoFile, options.BackupDir);
  const std::string free = FreeBackupDir(options.BackupDir);
  const std::optional<int> answer = rtl::Application().Ask(
      {.Caption = title,
       .Text = reason.what(),
       .Flags = rtl::MB_ICONWARNING,
       .Reasons = {"New Folder: the backups of this run go to \"" + free +
                       "\". Both runs can be undone, this one first.",
                   "Overwrite: the earlier run can no longer be undone after this run has ended."},
       .Buttons = {"&New Folder", "&Overwrite", "Cancel"},
       .Cancel = 2});
  if (!answer) rtl::Application().MessageBox(reason.what(), title, rtl::MB_ICONERROR);
  if (answer == 0) options.BackupDir = free;
  options.Policy.OverwriteBackups = answer == 1;
  return answer == 0 || answer == 1 ? TBackupAnswer::Run : TBackupAnswer::Cancel;
}

bool AskAboutMissingFiles(const std::vector<std::string>& missing, const std::string& title) {
  if (missing.empty()) return true;
  const std::optional<int> answer =
      rtl::Application().Ask({.Caption = title,
                              .Text = Counted(missing.size(), "file of the project is missing.",
                                              "files of the project are missing."),
                              .Flags = rtl::MB_ICONWARNING,
                              .Reasons = {"The run can go on without them."},
                              .Details = missing,
                              .Buttons = {"&Go On", "Cancel"},
                              .Cancel = 1});
  return answer != 1;
}

std::optional<bool> AskToLeaveOut(const EFileConversion& error, const std::string& title) {
  const std::optional<int> answer = rtl::Application().Ask(
      {.Caption = title,
       .Text = error.what(),
       .Flags = rtl::MB_ICONERROR,
       .Reasons =
           {"No file was changed.",
            "The run can go on without this file and others that cannot be converted. They are left as "
            "they are, and everything else is converted, the unit of a damaged form too."},
       .Buttons = {"&Leave Out and Go On", "Cancel"},
       .Default = 1,
       .Cancel = 1});
  if (!answer) return std::nullopt;
  return answer == 0;
}

bool TRestoreQuestion::Ask() {
  FPlan = TRestorePlan();
  FPlan.Add(FUndoFile);
  FPlan.Check();
  FLeftOut.clear();
  std::vector<std::string> lines;
  for (const TRestoreLine& line : FPlan.Lines())
    if (line.Verdict != TRestoreVerdict::Restorable) lines.push_back(MessageOf(line));
  const size_t missing = CountOf(FPlan, TRestoreVerdict::NoBackup);
  // A restore without a backup for every line fails before it touches anything.
  if (lines.size() == missing) return true;
  const size_t rest = FPlan.Lines().size() - lines.size();
  if ((FAnswer == TAnswer::None || FAnswered != lines) && !AskUser(lines, rest, missing == 0)) return false;
  FAnswered = lines;
  if (FAnswer == TAnswer::All) return true;
  FLeftOut = lines;
  std::set<std::string> restorable;
  for (const TRestoreLine& line : FPlan.Lines())
    if (line.Verdict == TRestoreVerdict::Restorable) restorable.insert(line.Original);
  FPlan.KeepOnly([&](std::string_view original) { return restorable.contains(std::string(original)); });
  return true;
}

bool TRestoreQuestion::AskUser(const std::vector<std::string>& lines, size_t rest, bool canRestoreAll) {
  rtl::TQuestion question{
      .Caption = FTitle,
      .Text = std::to_string(lines.size()) + " of " + std::to_string(lines.size() + rest) + " files " +
              (lines.size() == 1 ? "is not as the run left it." : "are not as the run left them."),
      .Flags = rtl::MB_ICONWARNING,
      .Reasons =
          {"Nothing was restored yet. A restore overwrites these files too, and there is no copy of what "
           "they hold now."},
      .Details = lines};
  std::vector<TAnswer> answers;
  const auto offer = [&](const char* caption, TAnswer answer) {
    question.Buttons.emplace_back(caption);
    answers.push_back(answer);
  };
  if (rest > 0) offer("Restore the &Rest", TAnswer::Rest);
  if (canRestoreAll) offer("Restore &All", TAnswer::All);
  offer("Cancel", TAnswer::None);
  question.Cancel = static_cast<int>(answers.size()) - 1;
  question.Default = rest > 0 ? 0 : question.Cancel;
  const std::optional<int> answer = rtl::Application().Ask(question);
  if (!answer) {
    std::string text = "Nothing was restored.";
    for (const std::string& line : lines) text += "\n" + line;
    rtl::Application().MessageBox(text, FTitle, rtl::MB_ICONERROR);
  }
  FAnswer = answer ? answers.at(static_cast<size_t>(*answer)) : TAnswer::None;
  return FAnswer != TAnswer::None;
}

}  // namespace mig
