// Reading whole files, entries of folders, lines.
#include <gtest/gtest.h>

#include "rtl/text/Files.h"
#include "rtl/text/Lines.h"
#include "tests/ErrorOf.h"
#include "tests/TempTree.h"
#include "win/Errors.h"

namespace {

class FilesTest : public testing::Test {
 protected:
  std::string Path(std::string_view name) const { return FTree.WindowsPath(name); }

  tests::TTempTree FTree;
};

TEST_F(FilesTest, FoldersAreCreatedAndListed) {
  FTree.Write("a/file", "");
  EXPECT_TRUE(rtl::CreateFolders(Path("a/b/c")));
  EXPECT_TRUE(rtl::CreateFolders(Path("a/b/c")));
  EXPECT_FALSE(rtl::CreateFolders(Path("a/file/c")));
  const bool hasLinks = FTree.Link("b", "a/Link");
  std::string found;
  rtl::TFolderEntries entries(Path("a"));
  while (entries.Next())
    found += entries.Path().substr(Path("a").size()) + (entries.IsFolder() ? " folder" : "") +
             (entries.IsLink() ? " link;" : ";");
  EXPECT_EQ(found, std::string("\\b folder;\\file;") + (hasLinks ? "\\Link folder link;" : ""));
  EXPECT_TRUE(entries.IsComplete());
  rtl::TFolderEntries none(Path("none"));
  EXPECT_FALSE(none.Next());
  EXPECT_FALSE(none.IsComplete());
  EXPECT_EQ(none.Error(), win::ERROR_PATH_NOT_FOUND);
}

TEST_F(FilesTest, AFileThatCannotBeReadIsNamed) {
  EXPECT_EQ(tests::ErrorOf([&] { return rtl::ReadFile(Path("none")); }),
            "Cannot open file \"" + Path("none") + "\". The system cannot find the file specified.");
}

TEST(LinesTest, EveryKindOfLineEnd) {
  const std::pair<const char*, std::vector<std::string>> rows[] = {
      {"", {}},
      {"a", {"a"}},
      {"a\r\n", {"a"}},
      {"a\rb\n\nc", {"a", "b", "", "c"}},
      {"\r\r\n\n", {"", "", ""}},
  };
  for (const auto& [text, lines] : rows) {
    std::vector<std::string> found;
    for (std::string_view rest = text; !rest.empty();) found.emplace_back(rtl::TakeLine(rest));
    EXPECT_EQ(found, lines) << text;
  }
}

}  // namespace
