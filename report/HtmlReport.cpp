#include "report/HtmlReport.h"

#include <nlohmann/json.hpp>

#include "MigWizard/passes/FindingRules.h"
#include "report/JsonText.h"
#include "report/ReportPageText.h"

namespace report {
namespace {

using TJson = nlohmann::ordered_json;

constexpr std::string_view kPlaceholder = "REPORT_DATA";

TJson FindingRow(size_t file, const mig::TFinding& finding) {
  return TJson::array({static_cast<int>(finding.Rule), static_cast<int>(finding.Level), file, finding.Line,
                       finding.Column, finding.Object, finding.Subject, mig::MessageOf(finding),
                       mig::AdviceOf(finding), finding.Before, finding.After});
}

size_t CountOf(const TSummary& summary, mig::TLevel level) {
  const auto place = summary.Levels.find(level);
  return place == summary.Levels.end() ? 0 : place->second;
}

size_t CountOf(const TSummary& summary, mig::TRuleId rule) {
  const auto place = summary.Rules.find(rule);
  return place == summary.Rules.end() ? 0 : place->second;
}

std::string Heading(const TRunInfo& run) {
  std::string text = run.IsPreview ? "Check" : "Run";
  text.append(" of ").append(run.Time).append(", mode ").append(run.Mode).append(", ").append(run.Scope);
  text.append(" ").append(run.Path);
  for (const std::string& option : run.Options) text.append(" ").append(option);
  return text;
}

TJson DataOf(const TReport& report) {
  const TSummary summary = Summarize(report);
  TJson files = TJson::array(), findings = TJson::array(), rules = TJson::array();
  TJson converted = TJson::array(), dropped = TJson::array();
  for (const mig::TRule& rule : mig::Rules()) rules.push_back(rule.Name);
  for (const mig::TFileReport& file : report.Files) {
    if (file.Findings.empty()) continue;
    for (const mig::TFinding& finding : file.Findings) findings.push_back(FindingRow(files.size(), finding));
    files.push_back(PathOf(report, file));
  }
  for (const mig::TConvertedClass& each : summary.Converted)
    converted.push_back(TJson::array({each.OldClass, each.NewClass, each.Count}));
  for (const auto& [name, count] : summary.Dropped) dropped.push_back(TJson::array({name, count}));
  const size_t left =
      CountOf(summary, mig::TRuleId::UnparsedObject) + CountOf(summary, mig::TRuleId::InheritedObject) +
      CountOf(summary, mig::TRuleId::NestedObject) + CountOf(summary, mig::TRuleId::UnmappedClass);
  const size_t lost =
      CountOf(summary, mig::TRuleId::LostConnection) + CountOf(summary, mig::TRuleId::DroppedLoginEntry);
  const bool isPreview = report.Run.IsPreview;
  const char* const objects = isPreview ? "objects to convert" : "objects converted";
  const char* const properties = isPreview ? "properties to drop" : "properties dropped";
  return {
      {"run", Heading(report.Run)},
      {"tiles",
       TJson::array({TJson::array({"files read", summary.FilesRead}),
                     TJson::array({isPreview ? "files to change" : "files changed", summary.FilesChanged}),
                     TJson::array({objects, summary.ObjectsConverted}),
                     TJson::array({properties, summary.PropertiesDropped}),
                     TJson::array({"errors", CountOf(summary, mig::TLevel::Error)}),
                     TJson::array({"warnings", CountOf(summary, mig::TLevel::Warning)}),
                     TJson::array({"notes", CountOf(summary, mig::TLevel::Note)})})},
      {"bar", TJson::array({TJson::array({objects, summary.ObjectsConverted, "good"}),
                            TJson::array({properties, summary.PropertiesDropped, "warning"}),
                            TJson::array({"connections and login entries lost", lost, "note"}),
                            TJson::array({"objects left as they were", left, "error"})})},
      {"converted", converted},
      {"dropped", dropped},
      {"rules", rules},
      {"files", files},
      {"findings", findings}};
}

}  // namespace

std::string HtmlReport(const TReport& report) {
  std::string data;
  // Escapes "<", which could end the script element.
  for (const char c : TextOf(DataOf(report), -1))
    data += c == '<' ? std::string("\\u003C") : std::string(1, c);
  std::string page = kReportPage;
  return page.replace(page.find(kPlaceholder), kPlaceholder.size(), data);
}

}  // namespace report
