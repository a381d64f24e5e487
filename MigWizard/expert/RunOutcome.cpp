#include "MigWizard/expert/RunOutcome.h"

#include <functional>

#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/UndoState.h"
#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"
#include "win/Shell.h"

namespace mig {
namespace {

// The buttons of the page, in their order, with their answers.
class TPage {
 public:
  explicit TPage(const std::string& title, std::string_view text, bool succeeded) {
    FQuestion.Caption = title;
    FQuestion.Text = text;
    FQuestion.Flags = succeeded ? rtl::MB_ICONINFORMATION : rtl::MB_ICONERROR;
    FQuestion.Buttons = {"Close"};
  }

  rtl::TQuestion& Question() { return FQuestion; }
  void AddLog(const std::string& logName) {
    if (!rtl::FileExists(logName)) return;
    FLogName = logName;
    FLog = AddButton("Open &Log");
  }
  void AddChanges() {
    if (TIDEUtils::CanShowChanges()) FChanges = AddButton("Show C&hanges");
  }
  void AddUndo(const std::string& undoFile) {
    if (undoFile.empty()) return;
    FQuestion.Rows.emplace_back("Way back", undoFile);
    FUndo = AddButton("&Undo This Run");
  }

  // Shows the page until a button other than that of the log is clicked. Returns nullopt if the front end
  // cannot ask.
  std::optional<TOutcomeAnswer> Show() {
    for (;;) {
      const std::optional<int> answer = rtl::Application().Ask(FQuestion);
      if (!answer) return std::nullopt;
      if (*answer == FChanges) return TOutcomeAnswer::ShowChanges;
      if (*answer == FUndo) return TOutcomeAnswer::Undo;
      if (*answer != FLog) return TOutcomeAnswer::Nothing;
      win::ShellExecuteA("open", FLogName);
    }
  }

 private:
  int AddButton(const char* caption) {
    FQuestion.Buttons.emplace_back(caption);
    return static_cast<int>(FQuestion.Buttons.size()) - 1;
  }

  rtl::TQuestion FQuestion;
  std::string FLogName;
  int FLog = -1, FChanges = -1, FUndo = -1;
};

std::string CountLeftOut(size_t count) {
  return count == 1 ? "One file or folder was left as it is."
                    : std::to_string(count) + " files or folders were left as they are.";
}

void ShowLeftOut(const std::vector<TLeftOut>& leftOut, const std::string& title) {
  std::string text = "These were left as they are:";
  for (const TLeftOut& entry : leftOut) text += "\n" + entry.Message;
  rtl::Application().MessageBox(text, title, rtl::MB_ICONINFORMATION);
}

// Returns True if the run changed something that a restore can undo.
bool CanUndo(const TRunObserver& observer, const TReplaceOptions& options) {
  return observer.HasReplaced() && !LastUndoFile(options).empty();
}

}  // namespace

std::string LastUndoFile(const TReplaceOptions& options) {
  if (!options.MakeBackup) return {};
  switch (FindUndoState(options.BackupDir)) {
    case TUndoState::UndoFile:
      return UndoFileOf(options.BackupDir);
    case TUndoState::Journal:
      return JournalOf(options.BackupDir);
    case TUndoState::None:
      break;
  }
  return {};
}

TOutcomeAnswer ShowReplaced(TComponentReplacer& replacer, TRunObserver& observer, bool succeeded) {
  const TReplaceOptions& options = replacer.Options();
  const std::string title = options.GetTitle();
  const std::vector<TLeftOut>& leftOut = replacer.LeftOut();
  TPage page(title, succeeded ? SReplaceSuccess : SReplaceFailed, succeeded);
  rtl::TQuestion& question = page.Question();
  if (!succeeded)
    question.Reasons.emplace_back(
        "The files that are named below were not replaced. All other changed files were.");
  if (!leftOut.empty()) question.Reasons.push_back(CountLeftOut(leftOut.size()));
  question.Rows = observer.Rows();
  question.Details = observer.Warnings();
  page.AddLog(replacer.LogFileName());
  if (observer.HasReplaced()) page.AddChanges();
  if (CanUndo(observer, options)) page.AddUndo(LastUndoFile(options));
  if (const auto answer = page.Show()) return *answer;
  rtl::Application().MessageBox(question.Text, title, question.Flags);
  if (!leftOut.empty()) ShowLeftOut(leftOut, title);
  return TOutcomeAnswer::Nothing;
}

bool ShowEnded(const TComponentReplacer& replacer, const TRunObserver& observer, const std::exception& error,
               TOutcomeAnswer& answer) {
  const TReplaceOptions& options = replacer.Options();
  const bool isStopped = dynamic_cast<const rtl::EAbort*>(&error) != nullptr;
  TPage page(options.GetTitle(), isStopped ? "The run was stopped." : SReplaceFailed, isStopped);
  rtl::TQuestion& question = page.Question();
  if (!isStopped) question.Reasons.emplace_back(error.what());
  question.Reasons.emplace_back(observer.HasReplaced() ? "Some files may have been replaced."
                                                       : "No file was changed.");
  for (const std::string& warning : observer.Warnings())
    if (warning != error.what()) question.Details.push_back(warning);
  page.AddLog(replacer.LogFileName());
  if (CanUndo(observer, options)) page.AddUndo(LastUndoFile(options));
  const auto shown = page.Show();
  if (shown) answer = *shown;
  return shown.has_value();
}

void ShowRestored(const std::string& title, bool succeeded, size_t count,
                  const std::vector<std::string>& leftOut, const std::vector<std::string>& warnings) {
  TPage page(title, succeeded ? SRestoreSuccess : SRestoreFailed, succeeded);
  rtl::TQuestion& question = page.Question();
  if (succeeded) question.Rows.emplace_back("Files", std::to_string(count) + " restored");
  if (!leftOut.empty()) question.Reasons.push_back(CountLeftOut(leftOut.size()));
  question.Details = leftOut;
  for (const std::string& warning : warnings)
    (succeeded ? question.Details : question.Reasons).push_back(warning);
  if (!page.Show()) rtl::Application().MessageBox(question.Text, title, question.Flags);
}

}  // namespace mig
