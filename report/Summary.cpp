#include "report/Summary.h"

#include <algorithm>

#include "MigWizard/passes/FindingRules.h"

namespace report {
namespace {

constexpr size_t kMostLines = 15;
constexpr size_t kMostNames = 4;
constexpr size_t kMostRules = 6;

std::string Counted(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Returns a text like "A 3, B 2 and 4 more".
template <typename TList, typename TText>
std::string FirstOf(const TList& list, TText textOf) {
  std::string text;
  for (size_t i = 0; i < std::min(list.size(), kMostNames); ++i)
    text.append(i == 0 ? "" : ", ").append(textOf(list[i]));
  if (list.size() > kMostNames) text += " and " + std::to_string(list.size() - kMostNames) + " more";
  return text;
}

std::string NameAndCount(const std::pair<std::string, size_t>& each) {
  return (each.first.empty() ? "(none)" : each.first) + " " + std::to_string(each.second);
}

size_t CountOf(const TSummary& summary, mig::TLevel level) {
  const auto place = summary.Levels.find(level);
  return place == summary.Levels.end() ? 0 : place->second;
}

// Returns a possible reason why a run found nothing to convert.
std::string WhyNothing(const TReport& report, const TSummary& summary) {
  const bool isFolder = report.Run.Scope == "folder";
  const std::vector<std::string>& options = report.Run.Options;
  const bool hasSubfolders = std::find(options.begin(), options.end(), "--subfolders") != options.end();
  if (summary.FilesRead == 0) {
    if (isFolder && !hasSubfolders) return "The folder has no units of its own. Does it need --subfolders?";
    return isFolder ? "There is no unit below the folder." : "The project has no units.";
  }
  const auto converted = std::count_if(report.Files.begin(), report.Files.end(),
                                       [](const mig::TFileReport& file) { return file.NamesNewUnits; });
  if (converted > 0)
    return Counted(static_cast<size_t>(converted), "unit names", "units name") +
           " the new units: the sources are converted already.";
  const auto isForm = [](const mig::TFileReport& file) { return file.IsInRun && !file.IsUnit; };
  std::string why = std::string("Is it --mode ") + (report.Run.Mode == "bde" ? "ibx" : "bde") + "?";
  if (std::none_of(report.Files.begin(), report.Files.end(), isForm)) why += " No unit names a form.";
  if (isFolder && !hasSubfolders) why += " Subfolders need --subfolders.";
  return why;
}

std::string FilesRow(const TReport& report, const TSummary& summary) {
  return std::to_string(summary.FilesRead) + " read, " + std::to_string(summary.FilesChanged) +
         (report.Run.IsPreview ? " to change" : " changed");
}

// Appends the number of findings of each rule, the most frequent first.
void AddRules(const TSummary& summary, std::string_view label, TSummaryRows& rows) {
  std::vector<std::pair<mig::TRuleId, size_t>> rules(summary.Rules.begin(), summary.Rules.end());
  std::erase_if(rules, [](const auto& each) {
    return each.first == mig::TRuleId::DroppedProperty || each.first == mig::TRuleId::LostConnection;
  });
  std::stable_sort(rules.begin(), rules.end(),
                   [](const auto& left, const auto& right) { return left.second > right.second; });
  for (size_t i = 0; i < std::min(rules.size(), kMostRules); ++i) {
    rows.emplace_back(i == 0 ? label : "",
                      std::string(mig::RuleOf(rules[i].first).Name) + " " + std::to_string(rules[i].second));
  }
  if (rules.size() > kMostRules)
    rows.emplace_back("", "and " + Counted(rules.size() - kMostRules, "more rule", "more rules"));
}

// Returns a row as a line of text, with the values in one column.
std::string LineOf(const std::string& label, const std::string& value) {
  constexpr size_t kColumn = 11;
  std::string line = label.empty() ? label : label + ":";
  line.resize(kColumn, ' ');
  return line + value;
}

// Returns a sentence about a run that changed nothing, or an empty string.
std::string NothingLine(const TReport& report, const TSummary& summary) {
  if (summary.FilesChanged > 0 || report.Run.IsDeclined) return {};
  const char* const nothing = summary.Rules.empty()  ? "There is nothing to convert. "
                              : report.Run.IsPreview ? "Nothing would be converted. "
                                                     : "Nothing was converted. ";
  return nothing + WhyNothing(report, summary);
}

}  // namespace

TSummaryRows SummaryRows(const TReport& report) {
  const TSummary summary = Summarize(report);
  const bool isPreview = report.Run.IsPreview;
  TSummaryRows rows = {{"Files", FilesRow(report, summary)}};
  if (summary.ObjectsConverted > 0) {
    rows.emplace_back("Objects", std::to_string(summary.ObjectsConverted) +
                                     (isPreview ? " to convert: " : " converted: ") +
                                     FirstOf(summary.Converted, [](const mig::TConvertedClass& each) {
                                       return each.OldClass + " " + std::to_string(each.Count);
                                     }));
  }
  if (summary.PropertiesDropped > 0) {
    rows.emplace_back(isPreview ? "Drops" : "Dropped",
                      Counted(summary.PropertiesDropped, "property", "properties") + ", " +
                          std::to_string(summary.EventsDropped) +
                          " of them event handlers: " + FirstOf(summary.Dropped, NameAndCount));
  }
  if (!summary.LostAliases.empty())
    rows.emplace_back(isPreview ? "Loses" : "Lost",
                      "connections by alias: " + FirstOf(summary.LostAliases, NameAndCount));
  AddRules(summary, isPreview ? "Leaves" : "Left", rows);
  if (!isPreview && !report.Run.BackupFolder.empty() && summary.FilesChanged > 0)
    rows.emplace_back("Backups", report.Run.BackupFolder);
  return rows;
}

std::vector<std::string> SummaryLines(const TReport& report, const std::vector<std::string>& reports) {
  const TSummary summary = Summarize(report);
  std::vector<std::string> lines;
  for (const auto& [label, value] : SummaryRows(report)) lines.push_back(LineOf(label, value));
  if (const std::string nothing = NothingLine(report, summary); !nothing.empty()) {
    lines.insert(lines.begin() + 1, nothing);
    if (summary.Rules.empty()) return lines;
  }
  if (!reports.empty()) {
    std::string names;
    for (const std::string& name : reports) names.append(names.empty() ? "" : ", ").append(name);
    lines.push_back(LineOf("Report", names));
  }
  const std::string counts = Counted(CountOf(summary, mig::TLevel::Error), "error", "errors") + ", " +
                             Counted(CountOf(summary, mig::TLevel::Warning), "warning", "warnings");
  if (report.Run.IsDeclined) return lines;
  if (summary.Rules.empty()) {
    lines.push_back(LineOf("Next", "compile the project"));
  } else if (reports.empty() && !report.Run.IsPreview) {
    lines.push_back(
        LineOf("Next", counts + " to look at: run again with --report FILE.html, or \"kvamigrate check\""));
  } else {
    lines.push_back(LineOf("Next", counts + " to look at"));
  }
  if (lines.size() > kMostLines) lines.resize(kMostLines);
  return lines;
}

}  // namespace report
