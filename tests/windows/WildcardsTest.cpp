// Wildcards on the command line, which the shells of Windows leave to the program.
#include <gtest/gtest.h>

#include "tests/RunCommand.h"

namespace {

TEST(WildcardsTest, FormsOfAFolder) {
  const tests::TTempTree tree;
  for (const char* const name : {"src/A.dfm", "src/b.DFM", "src/b[1].dfm"})
    tree.Write(name, std::string("object ") + name[4] + ": T\r\nend\r\n");
  tree.Write("src/C.pas", "unit C;");
  tree.MakeFolder("src/D.dfm");
  const std::string a = "object A: T\r\nend\r\n", b = "object b: T\r\nend\r\n";
  const std::pair<const char*, std::string> rows[] = {
      {"src\\*.dfm", "0|" + a + b + b + "|"},
      {"src/?.dfm", "0|" + a + b + "|"},
      {"src\\b[*.dfm src\\A.dfm", "0|" + b + a + "|"},
      {"src\\*.nfm", "2||kvamigrate: No file matches \"src\\*.nfm\".\n"},
      {"src\\A.dfm:stream", "2||kvamigrate: \"src\\A.dfm:stream\" cannot be written as a Windows path.\n"},
  };
  for (const auto& [inputs, shown] : rows)
    EXPECT_EQ(tests::RunCommand(tree, std::string("form to-text ") + inputs), shown) << inputs;
}

}  // namespace
