// Reports for people and programs about the changes of a run and the work that it left.
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

// A report cannot be created, or a baseline cannot be read.
class EReport : public rtl::Exception {
 public:
  using Exception::Exception;
};

// The parameters of a run.
struct TRunInfo {
  std::string Version;               // of the program
  std::string Mode;                  // "bde" or "ibx"
  std::string Scope;                 // "folder" or "project"
  std::string Path;                  // the folder or the project, as a host path
  std::string Folder;                // full Windows path of the folder of the run
  std::string Time;                  // "2026-11-23T05:46:14Z"
  std::vector<std::string> Options;  // as typed
  bool IsPreview = false;            // True if nothing was written
  bool IsDeclined = false;           // True if the user was asked what to replace, and declined all of it
  std::string BackupFolder;          // host path; empty without backups
};

struct TReport {
  TRunInfo Run;
  std::vector<mig::TFileReport> Files;  // in the order of the run
};

// Counts, summed over the files and their findings.
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

// Returns True if reports can be written to that file name: .json, .sarif, .html or .htm, ignoring case.
bool IsReportName(std::string_view fileName);
// Returns the report in the format of the extension of `fileName`. Raises EReport for any other extension.
std::string MakeReport(const TReport& report, std::string_view fileName);

// Returns a finding in the format of compilers: "Main.dfm(120,5): warning dropped-property: ...".
std::string FindingLine(const std::string& path, const mig::TFinding& finding);

}  // namespace report
