// Whole runs over the folders of tests/golden: the tree that comes out, log and undo file included, and the
// way back.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sstream>

#include "MigWizard/run/FileUtils.h"
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
    if (entry.is_regular_file()) files[fs::relative(entry.path(), root).string()] = ReadFile(entry.path());
  return files;
}

// What a run writes of paths and times, as the golden folders write it.
std::string WithPlaceholders(std::string text, const std::string& dir) {
  for (size_t at; (at = text.find(dir)) != std::string::npos;) text.replace(at, dir.size(), "<dir>");
  return std::regex_replace(text, std::regex("Created at: [^\r]*"), "Created at: <time>");
}

// The words of a file beside `in`, which says what is special about the run.
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
  ~GoldenTest() override { (void)win::SetACP(1252); }
};

TEST_P(GoldenTest, RunAndRestore) {
  const std::string name = GetParam();
  const tests::TTempTree temp;
  const fs::path tree = fs::path(temp.HostPath()) / "tree";
  fs::copy(Before(name), tree, fs::copy_options::recursive);
  const auto before = ReadTree(tree);
  const auto readOnly = Setting(name, "readonly");
  for (const std::string& file : readOnly)
    fs::permissions(tree / file, fs::perms::owner_read, fs::perm_options::replace);
  for (const std::string& codePage : Setting(name, "codepage"))
    ASSERT_TRUE(win::SetACP(static_cast<uint32_t>(std::stoul(codePage))));

  target::TKVAMigration migration(target::TCatalogue::BuiltIn());
  TReplaceOptions& options = migration.Options();
  fs::path base = tree;
  host::THost host;
  if (const auto project = Setting(name, "project"); !project.empty()) {
    rtl::TStringList units;
    for (const std::string& unit :
         host::SelectUnits(host::OpenProjectForRun(host, (tree / project[0]).string()), {}))
      units.Add(unit);
    options.Dest = sdProject;
    options.UnitNames = units.Text();
    base = (tree / project[0]).parent_path();
  } else {
    options.Dest = sdFolder;
    options.Directory = win::ToWindowsPath(tree.string());
    options.IncludeSubDirs = true;
  }
  options.BackupDir = JoinPath(win::ToWindowsPath(base.string()), "RBackup");
  TComponentReplacer& replacer = Setting(name, "mode").at(0) == "ibx"
                                     ? migration.IBX()
                                     : static_cast<TComponentReplacer&>(migration.BDE());
  EXPECT_EQ(replacer.Replace(), Setting(name, "result") != std::vector<std::string>{"False"});

  auto after = ReadTree(tree);
  for (auto& [file, text] : after)
    if (file.ends_with("Wiz_Log.txt") || file.ends_with("RExpert.reu"))
      text = WithPlaceholders(text, win::ToWindowsPath(tree.string()));
  const auto expected = ReadTree(kGolden / name / "out");
  for (const auto& [file, text] : expected) EXPECT_EQ(after[file], text) << name << "/" << file;
  for (const auto& [file, text] : after)
    EXPECT_TRUE(expected.contains(file)) << name << ": unexpected " << file;

  for (const std::string& file : readOnly)
    fs::permissions(tree / file, fs::perms::owner_write, fs::perm_options::add);
  const std::string undoFile = JoinPath(options.BackupDir, "RExpert.reu");
  const bool changedAny = !ReadFile(base / "RBackup" / "RExpert.reu").empty();
  EXPECT_EQ(replacer.Restore(undoFile), changedAny);
  const auto restored = ReadTree(tree);
  for (const auto& [file, text] : before) EXPECT_EQ(restored.at(file), text) << name << "/" << file;
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
