// Collects the results of a replacer's runs: conversions and findings, file by file.
//
//   TFindingsCollector collector(replacer, oldNames);
//   replacer.Preview();
//   const std::vector<TFileReport> files = collector.Finish();
#pragma once

#include <span>
#include <string>
#include <unordered_set>
#include <vector>

#include "MigWizard/run/Replacer.h"
#include "MigWizard/run/RunFindings.h"
#include "toolsapi/Interfaces.h"

namespace mig {

class TFindingsCollector {
 public:
  // Observes the runs of `replacer` by its functions OnConverted, OnMissingForm and OnOtherForm, until the
  // collector is destroyed. Both must outlive it. With TFindingDetail::Counts, files are named as the run
  // found them, and have no backups.
  TFindingsCollector(TComponentReplacer& replacer, const TOldNames& names,
                     TFindingDetail detail = TFindingDetail::Whole);
  ~TFindingsCollector();
  TFindingsCollector(const TFindingsCollector&) = delete;
  TFindingsCollector& operator=(const TFindingsCollector&) = delete;

  // Returns the files of the run, in its order and each once, and forgets them.
  std::vector<TFileReport> Finish();

 private:
  void AddFile(const std::string& fileName, const TFileConversion& conversion, bool isChanged);

  TComponentReplacer& FReplacer;
  const TFindingDetail FDetail;
  TRunFindings FFindings;
  std::unordered_set<std::string> FKnown;  // names of files that were added, in upper case
};

// The results of a run.
struct TRunResult {
  std::string Mode;       // "bde" or "ibx"
  bool IsFolder = false;  // a run over a folder, not a project
  std::string Folder;     // full Windows path of the folder of the run
  std::string BackupDir;  // full Windows path; empty without backups
  std::span<const TFileReport> Files;
};

// Implemented by the services of a host that shows the results of a loaded module's run.
class IRunResults : public toolsapi::IInterface {
 public:
  using TBase = IInterface;
  // Called when a run has converted its files, before it replaces them. `result` is valid during the call.
  virtual void RunConverted(const TRunResult& result) = 0;

 protected:
  ~IRunResults() = default;
};

}  // namespace mig

namespace toolsapi {

template <>
inline constexpr TInterfaceId kIdOf<mig::IRunResults>{"IRunResults",
                                                      TGuid("{0B7F4C52-91D6-4B1E-8E0B-7C1B7A5E3D94}")};

}  // namespace toolsapi
