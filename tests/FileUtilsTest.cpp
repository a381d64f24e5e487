// Paths, folder operations and the log file.
#include <gtest/gtest.h>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/UnitList.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "tests/RecordingFileSystem.h"
#include "tests/TempTree.h"

namespace mig {
namespace {

TEST(FileUtilsTest, JoinPath) {
  const char* const rows[][3] = {{"a", "b", "a\\b"},      {"a\\", "\\b", "a\\b"}, {"a", "", "a\\"},
                                 {"", "b", "b"},          {"", "", ""},           {"a", "\\", "a\\\\"},
                                 {"a", "\\\\b", "a\\\\b"}};
  for (const auto& [dir, name, joined] : rows) EXPECT_EQ(JoinPath(dir, name), joined);
}

TEST(FileUtilsTest, BackupFileName) {
  const char* const rows[][2] = {{"Unit1.pas", "Unit1.~pas"},
                                 {"C:\\x.y\\Unit1.DFM", "C:\\x.y\\Unit1.~DFM"},
                                 {"Readme", "Readme.~"},
                                 {"a.b.pas", "a.b.~pas"},
                                 {"a.", "a.~"}};
  for (const auto& [name, backup] : rows) EXPECT_EQ(BackupFileName(name), backup);
}

TEST(FileUtilsTest, CreateTempFolder) {
  const tests::TTempTree tree;
  tree.MakeFolder("$DS1");
  tree.MakeFolder("$DS2");
  const tests::TVariable temporary(tests::kTemporaryVariable, tree.HostPath());
  EXPECT_EQ(CreateTempFolder("$DS", 1), tree.WindowsPath("$DS3"));
  // $DS1 to $DS3 are checked; $DS4 is created between the check and the creation.
  tree.MakeFolder("$DS4");
  tests::TRecordingFileSystem files(win::FileSystem());
  files.FailAt(4, win::ERROR_FILE_NOT_FOUND);
  {
    const win::TFileSystemOverride inForce(files);
    EXPECT_EQ(CreateTempFolder("$DS", 1), tree.WindowsPath("$DS5"));
  }
  tree.Write("$DS6", "");
  EXPECT_EQ(CreateTempFolder("$DS", 1), "");
}

TEST(FileUtilsTest, LinksToFoldersAreNotFollowed) {
  const tests::TTempTree tree;
  tree.Write("precious/Kept.pas", "kept");
  tree.Write("one/Sub/Unit.pas", "");
  if (!tree.Link("../precious", "one/link")) GTEST_SKIP() << "there are no links";
  tree.Link("../../precious", "one/Sub/link");
  EXPECT_TRUE(DeleteFolder(tree.WindowsPath("one")));
  EXPECT_EQ(tree.Names(), std::vector<std::string>{"precious"});
  EXPECT_EQ(tree.Read("precious/Kept.pas"), "kept");
}

}  // namespace
}  // namespace mig
