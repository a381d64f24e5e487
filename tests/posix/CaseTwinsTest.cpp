// Names that differ only in case, on a file system that allows them.
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/RunTree.h"

namespace mig {
namespace {

namespace fs = std::filesystem;
using tests::kForm;
using CaseTwinsTest = tests::TRunTree;

// Neither file is overwritten with the other.
TEST_F(CaseTwinsTest, NeitherIsOverwritten) {
  const std::string twins = "\"<dir>\\src\\Sub\" and \"<dir>\\src\\sub\" differ only in case";
  FTree.Write("src/sub/C.pas", "unit C;");
  EXPECT_NE(Failure<rtl::Exception>().find(twins), std::string::npos);
  fs::remove_all(FTree.HostPath("src/sub"));

  FTree.Write("src/a.DFM", "object X: TForm\r\nend\r\n");  // is not converted
  FTree.Write("src/C.pas", "{$R a.DFM}");
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(FTree.Read("src/a.DFM"), "object X: TForm\r\nend\r\n");
  EXPECT_NE(Read("src/A.dfm"), kForm);
  fs::remove_all(FTree.HostPath("src/RBackup"));

  FTree.Write("src/C.pas", "{$R Main.dfm}{$R MAIN.dfm}");
  FTree.Write("src/Main.dfm", kForm);
  FTree.Write("src/MAIN.dfm", kForm);
  EXPECT_EQ(Failure<rtl::Exception>(),
            "\"<dir>\\src\\Main.dfm\" and \"<dir>\\src\\MAIN.dfm\" differ only in case and cannot be "
            "converted in one run.");
  EXPECT_EQ(Read("src/Main.dfm") + Read("src/MAIN.dfm"), std::string(kForm) + kForm);
}

}  // namespace
}  // namespace mig
