#include "report/JsonReport.h"

#include <nlohmann/json.hpp>

#include "MigWizard/passes/FindingRules.h"
#include "report/JsonText.h"

namespace report {
namespace {

using TJson = nlohmann::ordered_json;

constexpr int kFormatVersion = 1;

TJson RunOf(const TRunInfo& run) {
  return {{"program", "kvamigrate"}, {"programVersion", run.Version},
          {"mode", run.Mode},        {"scope", run.Scope},
          {"path", run.Path},        {"time", run.Time},
          {"options", run.Options},  {"preview", run.IsPreview}};
}

TJson SummaryOf(const TSummary& summary) {
  TJson json = {{"filesRead", summary.FilesRead},
                {"filesChanged", summary.FilesChanged},
                {"objectsConverted", summary.ObjectsConverted},
                {"propertiesDropped", summary.PropertiesDropped},
                {"eventsDropped", summary.EventsDropped}};
  TJson levels = TJson::object(), rules = TJson::object(), converted = TJson::array();
  TJson dropped = TJson::object(), aliases = TJson::object();
  for (const mig::TLevel level : {mig::TLevel::Error, mig::TLevel::Warning, mig::TLevel::Note}) {
    const auto place = summary.Levels.find(level);
    levels[std::string(mig::LevelName(level))] = place == summary.Levels.end() ? 0 : place->second;
  }
  for (const auto& [rule, count] : summary.Rules) rules[std::string(mig::RuleOf(rule).Name)] = count;
  for (const mig::TConvertedClass& each : summary.Converted)
    converted.push_back({{"oldClass", each.OldClass}, {"newClass", each.NewClass}, {"count", each.Count}});
  for (const auto& [name, count] : summary.Dropped) dropped[name] = count;
  for (const auto& [name, count] : summary.LostAliases) aliases[name] = count;
  json["levels"] = levels;
  json["rules"] = rules;
  json["converted"] = converted;
  json["dropped"] = dropped;
  json["lostAliases"] = aliases;
  return json;
}

TJson FileOf(const TReport& report, const mig::TFileReport& file) {
  TJson json = {{"path", PathOf(report, file)}, {"kind", file.IsUnit ? "unit" : "form"},
                {"binary", file.IsBinary},      {"encoding", file.Encoding},
                {"inRun", file.IsInRun},        {"changes", file.Changes},
                {"changed", file.IsChanged}};
  mig::TFileReport backup;
  backup.FileName = file.BackupName;
  json["backup"] = file.BackupName.empty() ? TJson() : TJson(PathOf(report, backup));
  return json;
}

TJson FindingOf(const std::string& path, const mig::TFinding& finding) {
  TJson json = {{"rule", mig::RuleOf(finding.Rule).Name},
                {"level", mig::LevelName(finding.Level)},
                {"file", path},
                {"line", finding.Line},
                {"column", finding.Column},
                {"object", finding.Object},
                {"oldClass", finding.OldClass},
                {"newClass", finding.NewClass},
                {"subject", finding.Subject},
                {"value", finding.Value},
                {"message", mig::MessageOf(finding)},
                {"advice", mig::AdviceOf(finding)}};
  if (finding.Rule == mig::TRuleId::DroppedProperty) json["event"] = finding.IsEvent;
  return json;
}

}  // namespace

std::string JsonReport(const TReport& report) {
  TJson files = TJson::array(), findings = TJson::array();
  for (const mig::TFileReport& file : report.Files) {
    files.push_back(FileOf(report, file));
    const std::string path = PathOf(report, file);
    for (const mig::TFinding& finding : file.Findings) findings.push_back(FindingOf(path, finding));
  }
  const TJson json = {{"version", kFormatVersion},
                      {"run", RunOf(report.Run)},
                      {"summary", SummaryOf(Summarize(report))},
                      {"files", std::move(files)},
                      {"findings", std::move(findings)}};
  return TextOf(json, 1);
}

}  // namespace report
