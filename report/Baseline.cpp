#include "report/Baseline.h"

#include <map>
#include <nlohmann/json.hpp>
#include <tuple>

#include "MigWizard/passes/FindingRules.h"
#include "rtl/text/SysUtils.h"

namespace report {
namespace {

using TKey = std::tuple<std::string, std::string, std::string, std::string, std::string, std::string>;

struct TKnown {
  std::map<TKey, int> Findings;
  std::map<std::string, int> Changes;  // by file
};

TKnown ReadKnown(std::string_view text) {
  TKnown known;
  const nlohmann::json json = nlohmann::json::parse(text);
  if (json.at("version").get<int>() != 1) throw EReport("The baseline has a version that is not known.");
  for (const nlohmann::json& finding : json.at("findings")) {
    const auto field = [&finding](const char* name) { return finding.at(name).get<std::string>(); };
    ++known.Findings[{field("rule"), field("file"), field("object"), field("oldClass"), field("subject"),
                      field("value")}];
  }
  for (const nlohmann::json& file : json.at("files"))
    known.Changes[file.at("path").get<std::string>()] = file.at("changes").get<int>();
  return known;
}

}  // namespace

void RemoveKnown(TReport& report, std::string_view json) {
  TKnown known;
  try {
    known = ReadKnown(json);
  } catch (const nlohmann::json::exception& error) {
    throw EReport(rtl::Format("The baseline is no report in JSON. %s", {error.what()}));
  }
  for (mig::TFileReport& file : report.Files) {
    const std::string path = PathOf(report, file);
    if (const auto place = known.Changes.find(path);
        place != known.Changes.end() && file.Changes <= place->second)
      file.IsChanged = false;
    std::erase_if(file.Findings, [&](const mig::TFinding& finding) {
      const auto place =
          known.Findings.find({std::string(mig::RuleOf(finding.Rule).Name), path, finding.Object,
                               finding.OldClass, finding.Subject, finding.Value});
      if (place == known.Findings.end() || place->second == 0) return false;
      --place->second;
      return true;
    });
  }
}

}  // namespace report
