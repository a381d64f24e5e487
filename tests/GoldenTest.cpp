// Whole runs over the folders of tests/golden: compares the resulting tree, including log and undo file,
// and the result of a restore.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "MigWizard/run/FileUtils.h"
#include "diff/LineDiff.h"
#include "host/ProjectChoice.h"
#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"
#include "target/KVAReplacer.h"
#include "tests/TempTree.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace mig {
namespace {

namespace fs = std::filesystem;

const fs::path kGolden = fs::path(KVA_SOURCE_DIR) / "tests" / "golden";

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::map<std::string, std::string> ReadTree(const fs::path& root) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(root))
    if (entry.is_regular_file())
      files[fs::relative(entry.path(), root).generic_string()] = ReadFile(entry.path());
  return files;
}

// Replaces paths and times in the output of a run by the placeholders of the golden folders.
std::string WithPlaceholders(std::string text, const std::string& dir) {
  for (size_t at; (at = text.find(dir)) != std::string::npos;) text.replace(at, dir.size(), "<dir>");
  return std::regex_replace(text, std::regex("Created at: [^\r]*"), "Created at: <time>");
}

// Returns the words of a file beside `in` that has a setting of the run.
std::vector<std::string> Setting(const std::string& name, const char* setting) {
  std::istringstream text(ReadFile(kGolden / name / setting));
  return {std::istream_iterator<std::string>(text), {}};
}

fs::path Before(const std::string& name) {
  const auto from = Setting(name, "from");
  return from.empty() ? kGolden / name / "in" : fs::path(KVA_SOURCE_DIR) / from[0];
}

class GoldenTest : public testing::TestWithParam<std::string> {
 protected:
  GoldenTest() {
    fs::copy(Before(FName), FTree, fs::copy_options::recursive);
    for (const std::string& codePage : Setting(FName, "codepage"))
      EXPECT_TRUE(win::SetACP(static_cast<uint32_t>(std::stoul(codePage))));
  }
  ~GoldenTest() override { (void)win::SetACP(1252); }

  // Runs the replacement of the folder with its own settings.
  bool Run(target::TKVAMigration& migration, const std::string& backupDir);

  const std::string FName = GetParam();
  const tests::TTempTree FTemp;
  const fs::path FTree = fs::path(FTemp.HostPath()) / "tree";
  fs::path FBase = FTree;  // the folder of the run
};

bool GoldenTest::Run(target::TKVAMigration& migration, const std::string& backupDir) {
  TReplaceOptions& options = migration.Options();
  host::THost host;
  if (const auto project = Setting(FName, "project"); !project.empty()) {
    rtl::TStringList units;
    for (const std::string& unit :
         host::SelectUnits(host::OpenProjectForRun(host, (FTree / project[0]).string()), {}))
      units.Add(unit);
    options.Dest = sdProject;
    options.UnitNames = units.Text();
    FBase = (FTree / project[0]).parent_path();
  } else {
    options.Dest = sdFolder;
    options.Directory = win::ToWindowsPath(FTree.string());
    options.IncludeSubDirs = true;
  }
  options.BackupDir = JoinPath(win::ToWindowsPath(FBase.string()), backupDir);
  TComponentReplacer& replacer = Setting(FName, "mode").at(0) == "ibx"
                                     ? migration.IBX()
                                     : static_cast<TComponentReplacer&>(migration.BDE());
  return replacer.Replace();
}

TEST_P(GoldenTest, RunAndRestore) {
  const auto before = ReadTree(FTree);
  const auto readOnly = Setting(FName, "readonly");
  for (const std::string& file : readOnly)
    fs::permissions(FTree / file, fs::perms::owner_read, fs::perm_options::replace);
  target::TKVAMigration migration(target::TCatalogue::BuiltIn());
  EXPECT_EQ(Run(migration, "RBackup"), Setting(FName, "result") != std::vector<std::string>{"False"});

  auto after = ReadTree(FTree);
  for (auto& [file, text] : after)
    if (file.ends_with("Wiz_Log.txt") || file.ends_with("RExpert.reu"))
      text = WithPlaceholders(text, win::ToWindowsPath(FTree.string()));
  const auto expected = ReadTree(kGolden / FName / "out");
  for (const auto& [file, text] : expected) EXPECT_EQ(after[file], text) << FName << "/" << file;
  for (const auto& [file, text] : after)
    EXPECT_TRUE(expected.contains(file)) << FName << ": unexpected " << file;

  for (const std::string& file : readOnly)
    fs::permissions(FTree / file, fs::perms::owner_write, fs::perm_options::add);
  const std::string undoFile = JoinPath(migration.Options().BackupDir, "RExpert.reu");
  const bool changedAny = !ReadFile(FBase / "RBackup" / "RExpert.reu").empty();
  EXPECT_EQ(migration.BDE().Restore(undoFile), changedAny);
  const auto restored = ReadTree(FTree);
  for (const auto& [file, text] : before) EXPECT_EQ(restored.at(file), text) << FName << "/" << file;
}

// Returns the sources of a tree, without files added by runs.
std::map<std::string, std::string> ReadSources(const fs::path& root) {
  auto files = ReadTree(root);
  std::erase_if(files, [](const auto& file) {
    return file.first.find("RBackup") != std::string::npos || file.first.ends_with("Wiz_Log.txt");
  });
  return files;
}

size_t ChangedLines(const std::string& before, const std::string& after, diff::TIgnore ignore) {
  const std::vector<diff::TDiffLine> lines = diff::DiffLines(before, after, ignore);
  return static_cast<size_t>(std::count_if(lines.begin(), lines.end(), [](const diff::TDiffLine& line) {
    return line.Kind != diff::TDiffLine::TKind::Same;
  }));
}

// Returns the kinds of line ends that a text holds.
std::set<std::string> LineEnds(const std::string& text) {
  const std::regex lineEnd("\r*\n|\r");
  std::set<std::string> kinds;
  for (std::sregex_iterator at(text.begin(), text.end(), lineEnd), end; at != end; ++at)
    kinds.insert(at->str());
  return kinds;
}

// No line of a completed tree differs from the original by white space alone, no line ends are mixed, and a
// second run changes nothing.
TEST_P(GoldenTest, CompletedTwice) {
  if (!Setting(FName, "result").empty()) GTEST_SKIP() << "the run stops";
  const auto before = ReadSources(FTree);
  target::TKVAMigration migration(target::TCatalogue::BuiltIn());
  migration.Complete({true, true, true, true, true});
  ASSERT_TRUE(Run(migration, "RBackup"));
  const auto once = ReadSources(FTree);
  for (const auto& [file, text] : once) {
    if (text.find('\0') != std::string::npos) continue;
    EXPECT_EQ(ChangedLines(before.at(file), text, diff::TIgnore::Nothing),
              ChangedLines(before.at(file), text, diff::TIgnore::Space))
        << file;
    EXPECT_EQ(LineEnds(text), LineEnds(before.at(file))) << file;
  }
  ASSERT_TRUE(Run(migration, "RBackup.2"));
  const auto twice = ReadSources(FTree);
  for (const auto& [file, text] : once) EXPECT_EQ(twice.at(file), text) << FName << "/" << file;
}

std::vector<std::string> Names() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kGolden))
    if (entry.is_directory()) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(Folders, GoldenTest, testing::ValuesIn(Names()), [](const auto& test) {
  std::string name = test.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace mig
