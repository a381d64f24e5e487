// Reports of whole runs: compared with an independent count; formats, summary, baseline.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <tuple>

#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/TextFile.h"
#include "host/ProjectChoice.h"
#include "report/Baseline.h"
#include "report/JsonReport.h"
#include "report/Report.h"
#include "report/RuleBook.h"
#include "report/Summary.h"
#include "rtl/text/StringList.h"
#include "target/KVAReplacer.h"
#include "target/OldNameList.h"
#include "tests/GeneratedTree.h"
#include "tests/RunCommand.h"
#include "win/FileApi.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace report {
namespace {

namespace fs = std::filesystem;

const fs::path kSources = KVA_SOURCE_DIR;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// --- A count from the forms before and after a run ---

struct TCountedObject {
  std::string Keyword, ClassName;
  std::vector<std::string> Roots;  // of its properties, one entry per line
};

// Returns the objects of a form as the IDE writes it, one property per line, by path.
std::map<std::string, TCountedObject> ObjectsOf(const std::string& text) {
  static const std::regex header(R"(^\s*(object|inherited|inline) (\w+): (\w+)( \[\d+\])?\s*$)");
  static const std::regex property(R"(^\s*(\w+)(\.\w+)* = (.*?)\s*$)");
  static const std::regex end(R"(^\s*end\s*$)"), quoted("'[^']*'");
  std::map<std::string, TCountedObject> objects;
  std::vector<std::string> paths;
  std::istringstream lines(text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text);
  int depth = 0;  // of lists and collections
  for (std::string line; std::getline(lines, line);) {
    std::smatch match;
    if (depth == 0 && std::regex_match(line, match, header)) {
      paths.push_back(paths.empty() ? match[2].str() : paths.back() + "." + match[2].str());
      objects[paths.back()] = {match[1], match[3], {}};
      continue;
    }
    if (paths.empty()) continue;
    if (depth == 0 && std::regex_match(line, match, property))
      objects[paths.back()].Roots.push_back(match[1]);
    if (depth == 0 && std::regex_match(line, end)) paths.pop_back();
    const std::string bare = std::regex_replace(line, quoted, "");
    for (const char c : bare)
      depth += (c == '(' || c == '<' || c == '{') - (c == ')' || c == '>' || c == '}');
  }
  return objects;
}

const std::map<std::string, std::string> kRenamed = {
    {"Database", "Connection"},
    {"DefaultDatabase", "DefaultConnection"},
    {"DefaultAction", "DefaultCloseAction"},
    {"SelectSQL", "SQL"},
    {"RefreshSQL", "SQLRefresh"},
    {"InsertSQL", "SQLInsert"},
    {"ModifySQL", "SQLUpdate"},
    {"DeleteSQL", "SQLDelete"},
    {"Script", "SQL"},
    {"Terminator", "Delimiter"},
    {"DataSource", "MasterSource"},
    {"IndexFieldNames", "DetailFields"},
};

struct TCounts {
  size_t Dropped = 0, Lost = 0, Inherited = 0;
  bool operator==(const TCounts&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const TCounts& counts) {
  return stream << counts.Dropped << " dropped, " << counts.Lost << " lost, " << counts.Inherited
                << " inherited";
}

TCounts Count(const std::string& before, const std::string& after, const mig::TClassMap& classes) {
  TCounts counts;
  const auto newObjects = ObjectsOf(after);
  for (const auto& [path, object] : ObjectsOf(before)) {
    if (classes.Find(object.ClassName) == nullptr) continue;
    if (object.Keyword != "object") {
      ++counts.Inherited;
      continue;
    }
    const TCountedObject& made = newObjects.at(path);
    const std::set<std::string> roots(made.Roots.begin(), made.Roots.end());
    const bool isConnection = made.ClassName == "TKVAConnection";
    for (const std::string& root : object.Roots) {
      if (root == "Params" && isConnection) continue;
      if (root == "DatabaseName" && !isConnection) {
        // An object that could not be parsed keeps its properties.
        counts.Lost += roots.contains("Connection") || roots.contains("DatabaseName") ? 0 : 1;
        continue;
      }
      const auto renamed = kRenamed.find(root);
      const bool isKept = roots.contains(root) ||
                          (renamed != kRenamed.end() && roots.contains(renamed->second)) ||
                          (root == "DatabaseName" && roots.contains("Database"));
      counts.Dropped += isKept ? 0 : 1;
    }
  }
  return counts;
}

// --- Runs ---

class ReportTest : public testing::Test {
 protected:
  // Previews the run of a folder or a project below `tree`, and returns its files. Stores the changed files
  // in `files`.
  TReport Preview(const fs::path& tree, const std::string& mode, const std::string& project,
                  std::map<std::string, std::string>* files = nullptr, bool isCompleted = false,
                  mig::TFindingDetail detail = mig::TFindingDetail::Whole) {
    target::TKVAMigration migration(target::TCatalogue::BuiltIn());
    if (isCompleted) migration.Complete({true, true, true, true, true});
    mig::TReplaceOptions& options = migration.Options();
    host::THost host;
    fs::path base = tree;
    if (project.empty()) {
      options.Dest = mig::sdFolder;
      options.Directory = win::ToWindowsPath(tree.string());
      options.IncludeSubDirs = true;
    } else {
      rtl::TStringList units;
      for (const std::string& unit :
           host::SelectUnits(host::OpenProjectForRun(host, (tree / project).string()), {}))
        units.Add(unit);
      options.Dest = mig::sdProject;
      options.UnitNames = units.Text();
      base = (tree / project).parent_path();
    }
    target::TKVAComponentReplacer& replacer = mode == "ibx" ? migration.IBX() : migration.BDE();
    FClasses = replacer.Classes();
    const mig::TOldNames names = target::BuiltInOldNames(FClasses);
    mig::TRunFindings findings(FClasses, names);
    replacer.CollectFindings(names, detail);
    replacer.OnConverted = [&](const std::string& fileName, const mig::TFileConversion& file,
                               bool isChanged) {
      findings.AddFile(fileName, file, isChanged, {});
      if (files != nullptr && isChanged)
        (*files)[win::ToHostName(fileName)] = std::string(file.Mark) + file.Bytes;
    };
    replacer.Preview();
    TReport report;
    report.Run.Folder = win::ToWindowsPath(base.string());
    report.Run.Scope = project.empty() ? "folder" : "project";
    report.Run.Mode = mode;
    report.Files = findings.Finish();
    return report;
  }

  mig::TClassMap FClasses;
};

TEST_F(ReportTest, CountsAreThoseOfTheFormsBeforeAndAfter) {
  const tests::TTempTree generated;
  tests::WriteGeneratedTree(generated, "bde", 1, /*isIbx=*/false);
  tests::WriteGeneratedTree(generated, "ibx", 2, /*isIbx=*/true);
  const std::string bde = generated.HostPath("bde"), ibx = generated.HostPath("ibx");
  const char* const rows[][3] = {
      {bde.c_str(), "bde", ""},
      {ibx.c_str(), "ibx", ""},
      {"tests/golden/binary/in", "bde", ""},
      {"tests/golden/utf16/in", "bde", ""},
      {"examples/bde", "bde", "LendDesk.dproj"},
      {"examples/bde", "bde", ""},
      {"examples/ibx", "ibx", "PressHouse.dproj"},
      {"examples/ibx", "ibx", ""},
      {"tests/golden/project-aliases/in", "bde", ""},
      {"tests/golden/subfolders/in", "bde", ""},
  };
  size_t forms = 0, dropped = 0;
  for (const auto& [tree, mode, project] : rows) {
    std::map<std::string, std::string> after;
    const TReport report = Preview(kSources / tree, mode, project, &after);
    EXPECT_EQ(
        SummaryRows(Preview(kSources / tree, mode, project, nullptr, false, mig::TFindingDetail::Counts)),
        SummaryRows(report))
        << tree;
    for (const mig::TFileReport& file : report.Files) {
      if (file.IsUnit || !file.IsChanged) continue;
      TCounts found;
      for (const mig::TFinding& finding : file.Findings) {
        found.Dropped += finding.Rule == mig::TRuleId::DroppedProperty;
        found.Lost += finding.Rule == mig::TRuleId::LostConnection;
        found.Inherited += finding.Rule == mig::TRuleId::InheritedObject;
      }
      const std::string name = win::ToHostName(win::FileSystem().GetLongPathNameA(file.FileName));
      const auto text = [](const std::string& bytes) { return mig::DecodeFormFile(bytes).Text; };
      EXPECT_EQ(found, Count(text(ReadFile(name)), text(after.at(win::ToHostName(file.FileName))), FClasses))
          << name;
      ++forms;
      dropped += found.Dropped;
    }
  }
  EXPECT_GE(forms, 60u);
  EXPECT_GE(dropped, 90u);
}

// The shown lines after a run are lines of the files as it leaves them, with or without completion.
TEST_F(ReportTest, LinesAreThoseOfTheFilesAfterTheRun) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"examples/bde", "bde", "LendDesk.dproj"},     {"examples/ibx", "ibx", "PressHouse.dproj"},
      {"tests/golden/binary/in", "bde", ""},         {"tests/golden/wide-header/in", "bde", ""},
      {"tests/golden/failed-objects/in", "bde", ""}, {"tests/golden/inherited/in", "bde", ""},
  };
  size_t units = 0, forms = 0;
  for (const auto& [tree, mode, project] : rows) {
    for (const bool isCompleted : {false, true}) {
      std::map<std::string, std::string> after;
      const TReport report = Preview(kSources / tree, mode, project, &after, isCompleted);
      for (const mig::TFileReport& file : report.Files) {
        if (!file.IsChanged) continue;
        const std::string& bytes = after.at(win::ToHostName(file.FileName));
        std::set<std::string> shown = {""};
        const mig::TFormFile form = file.IsUnit ? mig::TFormFile() : mig::DecodeFormFile(bytes);
        const mig::TTextFile unit = file.IsUnit ? mig::DecodeTextFile(bytes) : mig::TTextFile();
        const std::string& working = file.IsUnit ? unit.Text : form.Text;
        const bool isDefault = *(file.IsUnit ? unit.Encoding : form.Encoding) == qrl::TEncoding::Default();
        std::istringstream text(isDefault ? win::SourceToUtf8(working) : working);
        std::string previous;
        for (std::string line; std::getline(text, line); previous = line) {
          shown.insert(mig::ShownValue({}, line));
          shown.insert(mig::ShownValue({}, previous + line));  // where the conversion inserts a line
        }
        for (const mig::TFinding& finding : file.Findings) {
          EXPECT_TRUE(shown.contains(finding.After)) << file.FileName << ": " << finding.After;
          (file.IsUnit ? units : forms) += finding.After != finding.Before;
        }
      }
    }
  }
  EXPECT_GT(units, 20u);
  EXPECT_GT(forms, 20u);
}

// A transaction that a step cannot declare is the only one of the unit that is still told.
TEST_F(ReportTest, FindingsOfACompletedUnit) {
  const tests::TTempTree tree;
  tree.Write("A.pas",
             "unit A;\ninterface\ntype T = class(TForm)\n  D: TDatabase;\n  procedure Transaction;\nend;\n"
             "TD = class(TDatabase) end;\nimplementation\nvar D: TDatabase;\n{$R *.dfm}\nend.\n");
  tree.Write("A.dfm", "object A: T\n  object D: TDatabase\n  end\nend\n");
  tree.Write(
      "B.pas",
      "unit B;\ninterface\nvar Q: TKVAQuery;\nimplementation\nuses {$IFDEF X} KVA, {$ENDIF} DB;\nend.\n");
  std::map<std::string, std::string> after;
  std::string found;
  for (const mig::TFileReport& file : Preview(tree.HostPath(), "bde", "", &after, true).Files)
    for (const mig::TFinding& finding : file.Findings)
      found += std::string(mig::LevelName(finding.Level)) + " " + std::to_string(finding.Line) + ": " +
               mig::MessageOf(finding) + "\n";
  EXPECT_EQ(
      found,
      "warning 4: D is not completed, because its class already has a member Transaction\n"
      "error 3: the interface's uses clause is not completed, because the implementation's lists KVA next "
      "to a compiler directive\n");
  for (const auto& [name, text] : after) EXPECT_EQ(text.find("TKVATransaction"), std::string::npos) << text;
}

// What the standard requires of the parts of a SARIF log that the report has. No part has other properties.
struct TSarifField {
  const char* Name;
  const char*
      Type;  // a part, "[PART]" an array of it, "{PART}" properties with any names, or one of the words
  bool IsRequired = false;
};
const std::map<std::string, std::vector<TSarifField>> kSarif = {
    {"sarifLog", {{"$schema", "string"}, {"version", "2.1.0", true}, {"runs", "[run]", true}}},
    {"run",
     {{"tool", "tool", true},
      {"columnKind", "utf16CodeUnits unicodeCodePoints"},
      {"originalUriBaseIds", "{artifactLocation}"},
      {"results", "[result]"}}},
    {"tool", {{"driver", "toolComponent", true}}},
    {"toolComponent", {{"name", "string", true}, {"version", "string"}, {"rules", "[reportingDescriptor]"}}},
    {"reportingDescriptor",
     {{"id", "string", true},
      {"shortDescription", "text"},
      {"help", "text"},
      {"defaultConfiguration", "reportingConfiguration"}}},
    {"reportingConfiguration", {{"level", "none note warning error"}}},
    {"text", {{"text", "string", true}}},
    {"result",
     {{"ruleId", "string"},
      {"ruleIndex", "index"},
      {"level", "none note warning error"},
      {"message", "text", true},
      {"locations", "[location]"},
      {"partialFingerprints", "{string}"}}},
    {"location", {{"physicalLocation", "physicalLocation"}, {"logicalLocations", "[logicalLocation]"}}},
    {"physicalLocation", {{"artifactLocation", "artifactLocation", true}, {"region", "region"}}},
    {"artifactLocation", {{"uri", "uri"}, {"uriBaseId", "string"}, {"description", "text"}}},
    {"region", {{"startLine", "count"}, {"startColumn", "count"}}},
    {"logicalLocation", {{"fullyQualifiedName", "string"}, {"kind", "string"}}},
};

void CheckSarif(const nlohmann::json& value, std::string type, const std::string& path) {
  if (type.front() == '[' || type.front() == '{') {
    ASSERT_TRUE(type.front() == '[' ? value.is_array() : value.is_object()) << path;
    type = type.substr(1, type.size() - 2);
    for (const auto& [name, each] : value.items()) CheckSarif(each, type, path + "/" + name);
  } else if (const auto part = kSarif.find(type); part != kSarif.end()) {
    ASSERT_TRUE(value.is_object()) << path;
    for (const TSarifField& field : part->second) {
      EXPECT_TRUE(!field.IsRequired || value.contains(field.Name)) << path << " lacks " << field.Name;
      if (value.contains(field.Name)) CheckSarif(value[field.Name], field.Type, path + "/" + field.Name);
    }
    for (const auto& [name, each] : value.items())
      EXPECT_TRUE(std::any_of(part->second.begin(), part->second.end(),
                              [&name = name](const TSarifField& field) { return field.Name == name; }))
          << path << " has " << name;
  } else if (type == "index" || type == "count") {
    ASSERT_TRUE(value.is_number_integer()) << path;
    EXPECT_GE(value.get<int>(), type == "count" ? 1 : 0) << path;
  } else {
    ASSERT_TRUE(value.is_string()) << path;
    const std::string text = value;
    static const std::regex uri("([A-Za-z0-9._~/-]|%[0-9A-F]{2})+");
    const bool isOne =
        type == "uri" ? std::regex_match(text, uri)
                      : type == "string" || (" " + type + " ").find(" " + text + " ") != std::string::npos;
    EXPECT_TRUE(isOne) << path << ": " << text;
  }
}

TEST_F(ReportTest, SarifIsWhatTheStandardRequires) {
  TReport report = Preview(kSources / "examples" / "bde", "bde", "LendDesk.dproj");
  const nlohmann::json log = nlohmann::json::parse(MakeReport(report, "r.sarif"));
  CheckSarif(log, "sarifLog", "");
  const nlohmann::json& run = log["runs"][0];
  std::set<std::string> fingerprints;
  for (const nlohmann::json& result : run["results"]) {
    EXPECT_EQ(run["tool"]["driver"]["rules"].at(result["ruleIndex"].get<size_t>())["id"], result["ruleId"]);
    const nlohmann::json& place = result["locations"][0]["physicalLocation"]["artifactLocation"];
    EXPECT_TRUE(run["originalUriBaseIds"].contains(place["uriBaseId"].get<std::string>()));
    fingerprints.insert(result["partialFingerprints"]["kvamigrate/v1"]);
  }
  EXPECT_EQ(fingerprints.size(), run["results"].size());
  EXPECT_GT(fingerprints.size(), 20u);
  for (mig::TFileReport& file : report.Files)
    for (mig::TFinding& finding : file.Findings) finding.Line += 3;
  const nlohmann::json moved = nlohmann::json::parse(MakeReport(report, "r.sarif"));
  for (const nlohmann::json& result : moved["runs"][0]["results"])
    EXPECT_EQ(fingerprints.count(result["partialFingerprints"]["kvamigrate/v1"]), 1u);
}

TEST_F(ReportTest, SummaryAddsUpFromTheFindings) {
  const TReport report = Preview(kSources / "examples" / "bde", "bde", "");
  const TSummary summary = Summarize(report);
  size_t findings = 0, rules = 0, levels = 0, dropped = 0, aliases = 0;
  for (const mig::TFileReport& file : report.Files) findings += file.Findings.size();
  for (const auto& [rule, count] : summary.Rules) rules += count;
  for (const auto& [level, count] : summary.Levels) levels += count;
  for (const auto& [name, count] : summary.Dropped) dropped += count;
  for (const auto& [alias, count] : summary.LostAliases) aliases += count;
  EXPECT_EQ(rules, findings);
  EXPECT_EQ(levels, findings);
  EXPECT_EQ(dropped, summary.Rules.at(mig::TRuleId::DroppedProperty));
  EXPECT_EQ(aliases, summary.Rules.at(mig::TRuleId::LostConnection));
  EXPECT_GT(findings, 20u);
  EXPECT_LE(SummaryLines(report, {"a.json"}).size(), 15u);
}

TEST_F(ReportTest, ABaselineLeavesOutWhatItHas) {
  TReport report = Preview(kSources / "examples" / "bde", "bde", "");
  const std::string json = JsonReport(report);
  mig::TFinding another = report.Files[0].Findings.at(0);
  another.Line += 10;  // the same finding, further down
  report.Files[0].Findings.push_back(another);
  RemoveKnown(report, json);
  size_t left = 0;
  for (const mig::TFileReport& file : report.Files) {
    left += file.Findings.size();
    EXPECT_FALSE(file.IsChanged);
  }
  EXPECT_EQ(left, 1u);
  EXPECT_THROW(RemoveKnown(report, "{}"), EReport);
  EXPECT_THROW(RemoveKnown(report, "no JSON"), EReport);
}

TEST(RuleBookTest, IsTheOneOfTheDocumentation) {
  EXPECT_EQ(ReadFile(kSources / "docs" / "rules.md"), RuleBook());
}

// The reports of the example projects as files. To write them again: KVA_WRITE_GOLDEN=1.
TEST(GoldenReportTest, ExampleProjects) {
  for (const auto& [name, run] : {std::pair("bde", "--mode bde src/LendDesk.dproj"),
                                  std::pair("ibx", "--mode ibx src/PressHouse.dproj")}) {
    const tests::TTempTree tree;
    fs::copy(kSources / "examples" / name, tree.HostPath("src"), fs::copy_options::recursive);
    EXPECT_EQ(tests::RunCommand(tree, std::string("replace -q --report r.json ") + run), "0||");
    std::string json = tree.Read("r.json");
    for (size_t at; (at = json.find(tree.HostPath())) != std::string::npos;)
      json.replace(at, tree.HostPath().size(), "<dir>");
    json = std::regex_replace(json, std::regex("\"time\": \"[^\"]*\""), "\"time\": \"<time>\"");
    json = std::regex_replace(json, std::regex("\"programVersion\": \"[^\"]*\""),
                              "\"programVersion\": \"<version>\"");
    const fs::path golden = kSources / "tests" / "golden-reports" / (std::string(name) + ".json");
    if (std::getenv("KVA_WRITE_GOLDEN") != nullptr) std::ofstream(golden, std::ios::binary) << json;
    EXPECT_EQ(json, ReadFile(golden));
  }
}

}  // namespace
}  // namespace report
