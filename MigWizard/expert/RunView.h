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

  // Shows the progress of a run. Raises rtl::EAbort if the user has stopped the run, and it can still be
  // stopped.
  void Report(const std::string& title, const TRunProgress& progress);
  // Hides the window, for example before a message with the outcome.
  void Close();

  void AddWarning(std::string_view message) { FWarnings.append(message).append("\n"); }
  // Returns the warnings of the runs, one per line.
  const std::string& Warnings() const { return FWarnings; }

 protected:
  // The user has clicked on Stop.
  void Stop() { FIsStopped = true; }

  virtual void OpenWindow(const std::string& title, bool canStop) = 0;
  // Shows the state: the phase, its files and the name of the next one. Handles the events that wait. Called
  // when a phase begins, but not for every file. `canStop`: Stop has an effect now.
  virtual void ShowState(const TRunProgress& progress, bool canStop) = 0;
  virtual void CloseWindow() = 0;

 private:
  std::chrono::steady_clock::time_point FShown;  // when the window last showed the state
  std::string FWarnings;
  TRunPhase FPhase = TRunPhase::Units;  // when the window last showed the state
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
