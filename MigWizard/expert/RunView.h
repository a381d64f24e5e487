// The progress of a run as a front end shows it in a window. The run is one long call; the window stays
// responsive because it handles its events between two files.
//
// A window appears with the first file of a run. If the user stops the run there, the run ends with
// rtl::EAbort, before any original has been changed.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/run/Replacer.h"

namespace mig {

class TRunView {
 public:
  TRunView() = default;
  virtual ~TRunView() = default;
  TRunView(const TRunView&) = delete;
  TRunView& operator=(const TRunView&) = delete;

  // Shows the progress of a run. `canStop` is false for a restore. Raises rtl::EAbort if the user has stopped
  // the run.
  void Report(const std::string& title, const TRunProgress& progress, bool canStop);
  // Hides the window, for example before a message with the outcome.
  void Close();

  void AddWarning(std::string_view message) { FWarnings.append(message).append("\n"); }
  // Returns the warnings of the runs, one per line.
  const std::string& Warnings() const { return FWarnings; }

 protected:
  // The user has clicked on Stop.
  void Stop() { FIsStopped = true; }

  virtual void OpenWindow(const std::string& title, bool canStop) = 0;
  // Shows the state, and handles the events that wait. Not called for every file. From the last file on,
  // originals are replaced, so the run cannot be stopped any more.
  virtual void ShowState(const TRunProgress& progress, bool isLast) = 0;
  virtual void CloseWindow() = 0;

 private:
  std::chrono::steady_clock::time_point FShown;  // when the window last showed the state
  std::string FWarnings;
  bool FIsOpen = false;
  bool FIsStopped = false;
};

// Shows the runs of replacers in a view, for its own lifetime. None of them is owned.
class TRunWatch {
 public:
  TRunWatch(TRunView& view, std::vector<TComponentReplacer*> replacers);
  ~TRunWatch();
  TRunWatch(const TRunWatch&) = delete;
  TRunWatch& operator=(const TRunWatch&) = delete;

 private:
  std::vector<TComponentReplacer*> FReplacers;
};

}  // namespace mig
