#include "MigWizard/expert/RunView.h"

#include <utility>

#include "rtl/text/Exceptions.h"

namespace mig {

namespace {

// Often enough to look smooth, rarely enough not to slow the run down.
constexpr std::chrono::milliseconds kShowEvery{40};

}  // namespace

void TRunView::Report(const std::string& title, const TRunProgress& progress) {
  const bool canStop = CanStop(progress.Phase);
  const auto now = std::chrono::steady_clock::now();
  if (FIsOpen && now - FShown < kShowEvery && progress.Phase == FPhase) return;
  if (!std::exchange(FIsOpen, true)) {
    FIsStopped = false;
    OpenWindow(title, canStop);
  }
  FPhase = progress.Phase;
  ShowState(progress, canStop);
  FShown = std::chrono::steady_clock::now();
  if (FIsStopped && canStop) throw rtl::EAbort("Stopped by the user.");
}

void TRunView::Close() {
  if (std::exchange(FIsOpen, false)) CloseWindow();
}

TRunWatch::TRunWatch(TRunView& view, std::vector<TComponentReplacer*> replacers)
    : FReplacers(std::move(replacers)) {
  for (TComponentReplacer* replacer : FReplacers) {
    replacer->OnProgress = [&view, replacer](const TRunProgress& progress) {
      view.Report(replacer->Options().GetTitle(), progress);
    };
    replacer->OnReplacing = [&view, replacer](TRunPhase phase, int done, int total) {
      view.Report(replacer->Options().GetTitle(), {total, total, {}, phase, done, total});
    };
    replacer->OnWarning = [&view](std::string_view message) { view.AddWarning(message); };
  }
}

TRunWatch::~TRunWatch() {
  for (TComponentReplacer* replacer : FReplacers) {
    replacer->OnProgress = nullptr;
    replacer->OnReplacing = nullptr;
    replacer->OnWarning = nullptr;
  }
}

}  // namespace mig
