// Observes one run of a replacer: its warnings, its findings, and how far it came. The replacer's own hooks
// are called as before.
//
//   TRunObserver observer(replacer);
//   const bool replaced = replacer.Replace();
//   for (const auto& [label, value] : observer.Rows()) ...
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MigWizard/run/FindingsCollector.h"
#include "MigWizard/run/Replacer.h"
#include "report/Report.h"

namespace mig {

class TRunObserver {
 public:
  // Wraps the hooks of the replacer, which must outlive the object, and restores them in the destructor.
  explicit TRunObserver(TComponentReplacer& replacer);
  ~TRunObserver();
  TRunObserver(const TRunObserver&) = delete;
  TRunObserver& operator=(const TRunObserver&) = delete;

  // Forgets everything, for another run.
  void Clear();

  const std::vector<std::string>& Warnings() const { return FWarnings; }
  // Returns True if the run has begun to replace originals.
  bool HasReplaced() const { return FHasReplaced; }
  // Returns the numbers of the run as labels and values, for the user. Call after the run.
  std::vector<std::pair<std::string, std::string>> Rows();

 private:
  void Collect(const TOldNames& names);
  void FinishCollection();

  TComponentReplacer& FReplacer;
  const TRunHooks FHooks;  // as they were
  std::unique_ptr<TFindingsCollector> FCollector;
  report::TReport FReport;
  std::vector<std::string> FWarnings;
  bool FHasReplaced = false;
};

}  // namespace mig
