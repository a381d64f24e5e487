#include "report/SarifReport.h"

#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "MigWizard/passes/FindingRules.h"
#include "report/Fingerprints.h"
#include "report/JsonText.h"

namespace report {
namespace {

using TJson = nlohmann::ordered_json;

constexpr char kBase[] = "SRCROOT";

// Returns a path as a relative URI reference.
std::string UriOf(const std::string& path) {
  std::string uri;
  for (const char c : path) {
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                         c == '/' || c == '-' || c == '.' || c == '_' || c == '~';
    char code[4];
    std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(static_cast<uint8_t>(c)));
    uri += isPlain ? std::string(1, c) : std::string(code);
  }
  return uri;
}

TJson RulesOf() {
  TJson rules = TJson::array();
  for (const mig::TRule& rule : mig::Rules()) {
    rules.push_back({{"id", rule.Name},
                     {"shortDescription", {{"text", rule.About}}},
                     {"help", {{"text", rule.Advice}}},
                     {"defaultConfiguration", {{"level", mig::LevelName(rule.Level)}}}});
  }
  return rules;
}

TJson ResultOf(const std::string& path, const mig::TFinding& finding, const std::string& fingerprint) {
  TJson location = {{"physicalLocation",
                     {{"artifactLocation", {{"uri", UriOf(path)}, {"uriBaseId", kBase}}},
                      {"region", {{"startLine", finding.Line}, {"startColumn", finding.Column}}}}}};
  if (!finding.Object.empty())
    location["logicalLocations"] =
        TJson::array({{{"fullyQualifiedName", finding.Object}, {"kind", "object"}}});
  return {{"ruleId", mig::RuleOf(finding.Rule).Name},
          {"ruleIndex", static_cast<int>(finding.Rule)},
          {"level", mig::LevelName(finding.Level)},
          {"message", {{"text", mig::MessageOf(finding) + ". " + mig::AdviceOf(finding)}}},
          {"locations", TJson::array({std::move(location)})},
          {"partialFingerprints", {{"kvamigrate/v1", fingerprint}}}};
}

}  // namespace

std::string SarifReport(const TReport& report) {
  TJson results = TJson::array();
  for (const mig::TFileReport& file : report.Files) {
    const std::string path = PathOf(report, file);
    TFingerprints fingerprints(path);
    for (const mig::TFinding& finding : file.Findings)
      results.push_back(ResultOf(path, finding, fingerprints.Next(finding)));
  }
  const TJson driver = {{"name", "kvamigrate"}, {"version", report.Run.Version}, {"rules", RulesOf()}};
  const TJson run = {
      {"tool", {{"driver", driver}}},
      {"columnKind", "unicodeCodePoints"},
      {"originalUriBaseIds", {{kBase, {{"description", {{"text", "The folder of the run."}}}}}}},
      {"results", std::move(results)}};
  const TJson json = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                      {"version", "2.1.0"},
                      {"runs", TJson::array({run})}};
  return TextOf(json, 1);
}

}  // namespace report
