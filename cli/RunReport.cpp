#include "cli/RunReport.h"

#include <chrono>
#include <cstdio>

#include "MigWizard/run/FileUtils.h"
#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Help.h"
#include "cli/Options.h"
#include "cli/TypedPath.h"
#include "report/Baseline.h"
#include "report/Summary.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "target/OldNameList.h"
#include "win/FileApi.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

// Returns the present in the format of ISO 8601: "2026-01-31T12:00:00Z".
std::string Now() {
  using std::chrono::floor;
  const auto now = floor<std::chrono::seconds>(std::chrono::system_clock::now());
  const auto day = floor<std::chrono::days>(now);
  const std::chrono::year_month_day date = day;
  const std::chrono::hh_mm_ss time(now - day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return text;
}

// Returns the options that affect the conversion, as typed.
std::vector<std::string> OptionsOf(const TCommandLine& line) {
  std::vector<std::string> options;
  const auto add = [&options](const char* name, const std::string& value) {
    options.emplace_back(name);
    options.push_back(value);
  };
  if (line.SubFolders) options.emplace_back("--subfolders");
  if (!line.ActiveProject.empty()) add("--active", line.ActiveProject);
  for (const std::string& unit : line.Units) add("--unit", unit);
  for (const std::string& pattern : line.Exclude) add("--exclude", pattern);
  if (line.Interactive) options.emplace_back("--interactive");
  if (line.Complete) add("--complete", StepNames(*line.Complete));
  if (line.SkipConverted) options.emplace_back("--skip-converted");
  if (line.KeepGoing) options.emplace_back("--keep-going");
  if (line.NoBackup) options.emplace_back("--no-backup");
  if (line.CodePage != TCommandLine().CodePage) add("--codepage", std::to_string(line.CodePage));
  if (!line.Catalogue.empty()) add("--catalogue", line.Catalogue);
  return options;
}

std::string ReadBaseline(const std::string& fileName) {
  if (fileName.empty()) return {};
  rtl::TFileStream file(WindowsPath(fileName), rtl::fmOpenRead | rtl::fmShareDenyNone);
  return file.ReadToEnd();
}

}  // namespace

void RequireReportNames(const TCommandLine& line) {
  for (const std::string& name : line.Reports)
    if (!report::IsReportName(name))
      throw EUsage("A report ends in .json, .sarif or .html, and not as \"" + name + "\" does.");
}

TRunReport::TRunReport(const TCommandLine& line, target::TKVAComponentReplacer& replacer,
                       const mig::TReplaceOptions& options, const std::string& base, bool isPreview)
    : FLine(line), FBaseline(ReadBaseline(line.Baseline)) {
  report::TRunInfo& run = FReport.Run;
  run.Version = KVA_VERSION;
  run.Mode = line.Mode;
  run.Scope = options.Dest == mig::sdFolder ? "folder" : "project";
  run.Path = !line.Arguments.empty() ? line.Arguments[0] : line.Folder.empty() ? line.Project : line.Folder;
  run.Folder = base;
  run.Time = Now();
  run.Options = OptionsOf(line);
  run.IsPreview = isPreview;
  if (options.MakeBackup) run.BackupFolder = win::ToHostName(options.BackupDir);

  if (line.Quiet && line.Reports.empty() && !isPreview) return;
  FOldNames = target::BuiltInOldNames(replacer.Classes());
  const bool isSummaryEnough = !isPreview && line.Reports.empty() && line.Baseline.empty();
  FCollector = std::make_unique<mig::TFindingsCollector>(
      replacer, FOldNames, isSummaryEnough ? mig::TFindingDetail::Counts : mig::TFindingDetail::Whole);
}

bool TRunReport::Finish() {
  if (FCollector) FReport.Files = FCollector->Finish();
  if (!FBaseline.empty()) report::RemoveKnown(FReport, FBaseline);
  bool succeeded = true;
  std::vector<std::string> written;
  for (const std::string& name : FLine.Reports) {
    if (win::ReplaceFileContents(WindowsPath(name), report::MakeReport(FReport, name))) {
      written.push_back(name);
      continue;
    }
    Complain("The report \"" + name + "\" could not be written. " +
             win::SysErrorMessage(win::GetLastError()));
    succeeded = false;
  }
  if (!FLine.Quiet)
    for (const std::string& text : report::SummaryLines(FReport, written)) Note(text);
  return succeeded;
}

}  // namespace cli
