// The command check: its output, that it changes no file, and that no report shows a secret.
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/RunCommand.h"

namespace cli {
namespace {

class CheckTest : public testing::Test {
 protected:
  void Write(const std::string& property) {
    FTree.Write("src/A.pas",
                "unit A;\r\ninterface\r\nuses DBTables;\r\n{$R *.dfm}\r\nimplementation\r\nend.\r\n");
    FTree.Write("src/A.dfm", "object A: TForm\r\n  object D: TDatabase\r\n" + property + "  end\r\nend\r\n");
  }
  tests::TTempTree FTree;
};

constexpr char kCheck[] = "check --mode bde --folder src -q";

TEST_F(CheckTest, WritesNothingAndExitsWithFour) {
  Write("    AliasName = 'x'\r\n");
  const std::string unit = FTree.Read("src/A.pas"), form = FTree.Read("src/A.dfm");
  EXPECT_EQ(tests::RunCommand(FTree, kCheck),
            "4|A.pas(3,6): warning old-unit: the unit uses DBTables, a unit of the old components\n"
            "A.dfm(3,5): warning dropped-property: the property AliasName of A.D is dropped, because "
            "TKVAConnection does not publish it\n|");
  EXPECT_EQ(FTree.Read("src/A.pas"), unit);
  EXPECT_EQ(FTree.Read("src/A.dfm"), form);
  EXPECT_EQ(FTree.Names("src"), (std::vector<std::string>{"A.dfm", "A.pas"}));

  FTree.Write("src/A.pas", "unit A;\r\ninterface\r\nimplementation\r\nend.\r\n");
  EXPECT_EQ(tests::RunCommand(FTree, kCheck),
            "4|A.dfm(1,1): warning form-not-in-run: the form has 1 object(s) to convert, but no unit of the "
            "run names it\n|");
  std::filesystem::remove(FTree.HostPath("src/A.dfm"));
  EXPECT_EQ(tests::RunCommand(FTree, kCheck), "0||");
}

TEST_F(CheckTest, NoSecretIsEverShown) {
  Write(
      "    Params.Strings = (\r\n      'USER NAME=u'\r\n      'PASSWORD=tiger'\r\n      'password=tiger'\r\n"
      "      'X=1' 'PWD=tiger')\r\n    DBPassword = 'tiger'\r\n");
  FTree.Write("src/B.pas",
              "unit B;\r\nuses DBTables;\r\nvar D: TDatabase;\r\nbegin\r\n"
              "  D.Params.Values['PASSWORD'] := 'tiger';\r\nend.\r\n");
  std::string output = tests::RunCommand(
      FTree, "check --mode bde --folder src --report a.json --report a.sarif --report a.html");
  output += FTree.Read("a.json") + FTree.Read("a.sarif") + FTree.Read("a.html");
  EXPECT_NE(output.find("dropped-login-entry: the login entry PWD"), std::string::npos);
  EXPECT_EQ(output.find("tiger"), std::string::npos);
}

TEST_F(CheckTest, TheBaselineOfABuild) {
  Write("    AliasName = 'x'\r\n");
  EXPECT_EQ(tests::RunCommand(FTree, std::string(kCheck) + " --report known.json").substr(0, 1), "4");
  EXPECT_EQ(tests::RunCommand(FTree, std::string(kCheck) + " --baseline known.json"), "0||");
  FTree.Write("src/A.dfm",
              "object A: TForm\r\n\r\n  object D: TDatabase\r\n    AliasName = 'x'\r\n    SessionName = "
              "'y'\r\n  end\r\nend\r\n");
  EXPECT_EQ(tests::RunCommand(FTree, std::string(kCheck) + " --baseline known.json"),
            "4|A.dfm(5,5): warning dropped-property: the property SessionName of A.D is dropped, because "
            "TKVAConnection does not publish it\n|");
}

}  // namespace
}  // namespace cli
