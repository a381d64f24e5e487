#include "report/Report.h"

#include <algorithm>

#include "MigWizard/passes/FindingRules.h"
#include "report/HtmlReport.h"
#include "report/JsonReport.h"
#include "report/SarifReport.h"
#include "rtl/text/SysUtils.h"

namespace report {
namespace {

using TCounts = std::map<std::string, size_t>;

std::vector<std::pair<std::string, size_t>> MostFrequentFirst(const TCounts& counts) {
  std::vector<std::pair<std::string, size_t>> list(counts.begin(), counts.end());
  std::stable_sort(list.begin(), list.end(),
                   [](const auto& left, const auto& right) { return left.second > right.second; });
  return list;
}

void AddConverted(TSummary& summary, const mig::TConvertedClass& converted) {
  summary.ObjectsConverted += converted.Count;
  for (mig::TConvertedClass& known : summary.Converted) {
    if (!rtl::SameText(known.OldClass, converted.OldClass)) continue;
    known.Count += converted.Count;
    return;
  }
  summary.Converted.push_back(converted);
}

std::string ExtensionOf(std::string_view fileName) {
  const size_t dot = fileName.rfind('.');
  return dot == std::string_view::npos ? std::string() : rtl::LowerCase(fileName.substr(dot));
}

}  // namespace

TSummary Summarize(const TReport& report) {
  TSummary summary;
  TCounts dropped, aliases;
  for (const mig::TFileReport& file : report.Files) {
    summary.FilesRead += file.IsInRun ? 1 : 0;
    summary.FilesChanged += file.IsChanged ? 1 : 0;
    for (const mig::TConvertedClass& converted : file.Converted) AddConverted(summary, converted);
    for (const mig::TFinding& finding : file.Findings) {
      summary.Rules[finding.Rule] += finding.Count;
      summary.Levels[finding.Level] += finding.Count;
      if (finding.Rule == mig::TRuleId::LostConnection) aliases[finding.Value] += finding.Count;
      if (finding.Rule != mig::TRuleId::DroppedProperty) continue;
      summary.PropertiesDropped += finding.Count;
      summary.EventsDropped += finding.IsEvent ? finding.Count : 0;
      dropped[finding.Subject] += finding.Count;
    }
  }
  std::stable_sort(summary.Converted.begin(), summary.Converted.end(),
                   [](const auto& left, const auto& right) { return left.Count > right.Count; });
  summary.Dropped = MostFrequentFirst(dropped);
  summary.LostAliases = MostFrequentFirst(aliases);
  return summary;
}

std::string PathOf(const TReport& report, const mig::TFileReport& file) {
  std::string path = rtl::ExtractRelativePath(report.Run.Folder + "\\", file.FileName);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

bool IsReportName(std::string_view fileName) {
  const std::string extension = ExtensionOf(fileName);
  return extension == ".json" || extension == ".sarif" || extension == ".html" || extension == ".htm";
}

std::string MakeReport(const TReport& report, std::string_view fileName) {
  const std::string extension = ExtensionOf(fileName);
  if (extension == ".json") return JsonReport(report);
  if (extension == ".sarif") return SarifReport(report);
  if (IsReportName(fileName)) return HtmlReport(report);
  throw EReport(rtl::Format("A report ends in .json, .sarif or .html, and not as \"%s\" does.", {fileName}));
}

std::string FindingLine(const std::string& path, const mig::TFinding& finding) {
  return path + "(" + std::to_string(finding.Line) + "," + std::to_string(finding.Column) +
         "): " + std::string(mig::LevelName(finding.Level)) + " " +
         std::string(mig::RuleOf(finding.Rule).Name) + ": " + mig::MessageOf(finding);
}

}  // namespace report
