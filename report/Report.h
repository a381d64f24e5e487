// What a run did and left, in the forms that people and programs read.
//
//   report::TReport data{info, findings.Finish()};
//   const std::string text = report::MakeReport(data, "out.json");
//
// All texts are UTF-8. Paths of files are relative to the folder of the run, with "/".
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MigWizard/run/RunFindings.h"
#include "rtl/text/Exceptions.h"

namespace report {

// A report cannot be made, or a baseline cannot be read.
class EReport : public rtl::Exception {
 public:
  using Exception::Exception;
};

// What was run.
struct TRunInfo {
  std::string Version;               // of the program
  std::string Mode;                  // "bde" or "ibx"
  std::string Scope;                 // "folder" or "project"
  std::string Path;                  // the folder or the project, as a path of this machine
  std::string Folder;                // full Windows path of the folder of the run
  std::string Time;                  // "2026-11-23T05:46:14Z"
  std::vector<std::string> Options;  // as typed
  bool IsPreview = false;            // nothing was written
  std::string BackupFolder;          // as a path of this machine; empty without backups
};

struct TReport {
  TRunInfo Run;
  std::vector<mig::TFileReport> Files;  // in the order of the run
};

// Counts, all of them sums over the files and their findings.
struct TSummary {
  size_t FilesRead = 0, FilesChanged = 0;
  size_t ObjectsConverted = 0;
  std::vector<mig::TConvertedClass> Converted;          // the most frequent first
  std::vector<std::pair<std::string, size_t>> Dropped;  // properties by name, the most frequent first
  size_t PropertiesDropped = 0, EventsDropped = 0;      // events are among the properties
  std::vector<std::pair<std::string, size_t>>
      LostAliases;  // lost connections by alias, the most frequent first
  std::map<mig::TRuleId, size_t> Rules;
  std::map<mig::TLevel, size_t> Levels;
};

TSummary Summarize(const TReport& report);

// Returns the file's path below the folder of the run, with "/".
std::string PathOf(const TReport& report, const mig::TFileReport& file);

// Returns True if there is a report of that file name: .json, .sarif, .html or .htm, in any case.
bool IsReportName(std::string_view fileName);
// Returns the report that the extension of `fileName` asks for. Raises EReport for any other extension.
std::string MakeReport(const TReport& report, std::string_view fileName);

std::string JsonReport(const TReport& report);
std::string SarifReport(const TReport& report);
std::string HtmlReport(const TReport& report);

// Returns at most 15 lines for people. `reports` are the names of the reports that were written.
std::vector<std::string> SummaryLines(const TReport& report, const std::vector<std::string>& reports);

// Returns a finding as compilers print it: "Main.dfm(120,5): warning dropped-property: ...".
std::string FindingLine(const std::string& path, const mig::TFinding& finding);

// Removes the findings that the report `json` of an earlier run has. Lines and columns may differ; of findings that
// are otherwise the same, as many are removed as `json` has. Raises EReport if `json` is no such report.
void RemoveKnown(TReport& report, std::string_view json);

// Returns docs/rules.md.
std::string RuleBook();

}  // namespace report
