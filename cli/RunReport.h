// Collects the findings of a run, prints their summary, and writes reports.
//
//   TRunReport report(line, replacer, options, base, /*isPreview=*/false);
//   replacer.Replace();
//   const bool isWritten = report.Finish();
#pragma once

#include <memory>
#include <string>

#include "MigWizard/run/FindingsCollector.h"
#include "cli/CommandLine.h"
#include "report/Report.h"
#include "target/KVAReplacer.h"

namespace cli {

// Raises EUsage if a report of the command line has no extension of a report.
void RequireReportNames(const TCommandLine& line);

class TRunReport {
 public:
  // Collects the findings of `replacer` in the next run. Everything but `line` must outlive the object.
  // `base` is the full Windows path of the folder of the run. Raises EUsage if the file name of a report
  // has an unknown extension.
  TRunReport(const TCommandLine& line, target::TKVAComponentReplacer& replacer,
             const mig::TReplaceOptions& options, const std::string& base, bool isPreview);
  TRunReport(const TRunReport&) = delete;
  TRunReport& operator=(const TRunReport&) = delete;

  // Notes that the user was asked about the changes and declined all of them.
  void SetDeclined() { FReport.Run.IsDeclined = true; }
  // Ends the collection, removes findings that the baseline has, writes the reports, and prints the summary
  // on standard error unless the command line is quiet. Returns false, after a message, if a report could
  // not be written.
  [[nodiscard]] bool Finish();
  // Valid after Finish.
  const report::TReport& Report() const { return FReport; }

 private:
  const TCommandLine FLine;
  const std::string FBaseline;  // text of a report
  mig::TOldNames FOldNames;
  std::unique_ptr<mig::TFindingsCollector> FCollector;  // null if findings are not needed
  report::TReport FReport;
};

}  // namespace cli
