// Paths, folder operations and the log file.
#include <gtest/gtest.h>

#include "MigWizard/FileUtils.h"
#include "rtl/Streams.h"
#include "rtl/SysUtils.h"
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

}  // namespace
}  // namespace mig
