// The report of a run, as the pages show it. It is kept in a file beside the run's undo file, so that it is
// there again when the run is looked at later.
//
//   const TReportPtr report = ReportOf(result, collector.Finish(), /*isPreview=*/true);
//   KeepReport(*report, undoFile);
//   ... ReadKeptReport(undoFile) ...
//
// Findings have lines of the sources in them, so nobody but the file's owner can read it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "MigWizard/run/FindingsCollector.h"
#include "report/Report.h"

namespace desktop {

// Shared by the pages that show it.
using TReportPtr = std::shared_ptr<const report::TReport>;

// `files` are those of the result, whose own list is not used.
TReportPtr ReportOf(const mig::TRunResult& result, std::vector<mig::TFileReport> files, bool isPreview);

inline constexpr char kKeptReportName[] = "Findings.json";

// Writes the report of the run with this undo file, a full Windows path. Returns false if the file cannot be
// written; an earlier one may be lost then.
[[nodiscard]] bool KeepReport(const report::TReport& report, const std::string& undoFile);

// Returns the report of the run with this undo file, a full Windows path. Returns null if there is none: only
// the host window keeps reports, a damaged one is none, and neither is one of another run, whose undo file
// was written at another time.
TReportPtr ReadKeptReport(const std::string& undoFile);

}  // namespace desktop
