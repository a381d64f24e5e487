#include "MigWizard/expert/RunView.h"

#include <utility>

#include "MigWizard/wizard/Wizard.h"
#include "rtl/text/Exceptions.h"

namespace mig {

namespace {

// Often enough to look smooth, rarely enough not to slow the run down.
constexpr std::chrono::milliseconds kShowEvery{40};

// A restore copies over the originals one by one, so it cannot be stopped halfway.
bool IsRestoring() {
  return WizardForm && WizardForm->GetReplacerIndex() == kRestoreIndex;
}

}  // namespace

void TRunView::Report(const std::string& title, const TRunProgress& progress, bool canStop) {
  const bool isLast = progress.Done >= progress.Known;
  const auto now = std::chrono::steady_clock::now();
  if (FIsOpen && now - FShown < kShowEvery && !isLast) return;
  if (!std::exchange(FIsOpen, true)) {
    FIsStopped = false;
    OpenWindow(title, canStop);
  }
  ShowState(progress, isLast);
  FShown = std::chrono::steady_clock::now();
  if (FIsStopped && !isLast) {
    Close();
    throw rtl::EAbort("Stopped by the user.");
  }
}

void TRunView::Close() {
  if (std::exchange(FIsOpen, false)) CloseWindow();
}

TRunWatch::TRunWatch(TRunView& view, std::vector<TComponentReplacer*> replacers)
    : FReplacers(std::move(replacers)) {
  for (TComponentReplacer* replacer : FReplacers) {
    replacer->OnProgress = [&view, replacer](const TRunProgress& progress) {
      view.Report(replacer->Options().GetTitle(), progress, !IsRestoring());
    };
    replacer->OnWarning = [&view](std::string_view message) { view.AddWarning(message); };
  }
}

TRunWatch::~TRunWatch() {
  for (TComponentReplacer* replacer : FReplacers) {
    replacer->OnProgress = nullptr;
    replacer->OnWarning = nullptr;
  }
}

}  // namespace mig
