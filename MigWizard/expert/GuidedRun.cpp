#include "MigWizard/expert/GuidedRun.h"

#include <memory>
#include <optional>
#include <string>

#include "MigWizard/expert/RunOutcome.h"
#include "MigWizard/expert/RunQuestions.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/UndoState.h"
#include "MigWizard/wizard/SaveWarn.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/SysUtils.h"
#include "win/FileSystem.h"

namespace mig {
namespace {

// Raises rtl::EAbort if the run ended and the user has seen why.
bool Replace(TComponentReplacer& replacer, TRunObserver& observer) {
  TReplaceOptions& options = replacer.Options();
  for (;;) {
    try {
      return replacer.Replace();
    } catch (const EFileConversion& error) {
      const std::optional<bool> leaveOut = AskToLeaveOut(error, options.GetTitle());
      if (!leaveOut) throw;
      if (!*leaveOut) throw rtl::EAbort(error.what());
    } catch (const rtl::Exception& error) {
      TOutcomeAnswer answer = TOutcomeAnswer::Nothing;
      if (!ShowEnded(replacer, observer, error, answer)) throw;
      if (answer == TOutcomeAnswer::Undo) RestoreInteractively(replacer, LastUndoFile(options));
      throw rtl::EAbort(error.what());
    }
    options.Policy.KeepGoing = true;
    observer.Clear();
  }
}

}  // namespace

void ReplaceInteractively(TComponentReplacer& replacer, const std::function<void()>& onReplaced) {
  TOutcomeAnswer answer = TOutcomeAnswer::Nothing;
  {
    TRunObserver observer(replacer);
    const bool replaced = Replace(replacer, observer);
    if (replaced) onReplaced();
    answer = ShowReplaced(replacer, observer, replaced);
  }
  if (answer == TOutcomeAnswer::ShowChanges) TIDEUtils::ShowChanges();
  if (answer == TOutcomeAnswer::Undo) RestoreInteractively(replacer, LastUndoFile(replacer.Options()));
}

void RestoreInteractively(TComponentReplacer& replacer, std::string_view undoFile) {
  const std::string title = replacer.Options().GetTitle();
  if (!ShowSaveWarning(title, /*isProject=*/false, /*isRestore=*/true)) return;
  const auto lock = LockRunFolder(rtl::ExtractFileDir(undoFile));
  TRestoreQuestion question(undoFile, title);
  try {
    if (!question.Ask()) return;
  } catch (const rtl::EStreamError&) {  // raised again below
  }
  const std::string project = TIDEUtils::GetProjectFileName();
  // If the host refuses to close, restores the files anyway.
  TIDEUtils::CloseProjectGroup();
  // Closing may have saved files, which are edited then.
  if (question.Ask()) {
    TRunObserver observer(replacer);
    const bool restored = replacer.Restore(question.Plan());
    ShowRestored(title, restored, question.Plan().Lines().size(), question.LeftOut(), observer.Warnings());
  }
  TIDEUtils::OpenProject(project);
}

}  // namespace mig
