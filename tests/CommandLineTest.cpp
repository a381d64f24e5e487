// Replace and restore by the command line program.
#include <filesystem>
#include <gtest/gtest.h>

#include "cli/PathPattern.h"
#include "tests/RunCommand.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

constexpr char kUnit[] = "unit A;\r\nvar Q: TQuery;\r\n{$R *.dfm}\r\n";
constexpr char kForm[] = "object A: TForm\r\n  object Q: TQuery\r\n  end\r\nend\r\n";

class CommandLineTest : public testing::Test {
 protected:
  CommandLineTest() {
    FTree.Write("src/A.pas", kUnit);
    FTree.Write("src/A.dfm", kForm);
    FTree.Write("src/old/B.pas", kUnit);
    FTree.Write("src/old/B.dfm", "no form");
  }

  std::string Run(const std::string& arguments) { return tests::RunCommand(FTree, arguments); }

  tests::TTempTree FTree;
};

TEST_F(CommandLineTest, ReplaceAndRestore) {
  EXPECT_EQ(Run("replace --mode bde --folder src --subfolders"),
            "0|Replace procedure was performed sucessfully.\n|");
  EXPECT_EQ(Run("restore src/RBackup/RExpert.reu"), "0|Files were succefully restored.\n|");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(FTree.Read("src/A.dfm"), kForm);
  fs::remove(FTree.HostPath("src/RBackup/A.~pas"));
  EXPECT_EQ(Run("restore src/RBackup/RExpert.reu"),
            "1|Failed to restore files.\n|kvamigrate: There is no backup for this line of the undo file, so "
            "nothing was restored: <dir>\\src\\A.pas=<dir>\\src\\RBackup\\A.~pas\n");
}

TEST_F(CommandLineTest, AFileThatStopsARunIsNamedWithAWayOut) {
  FTree.Write("src/old/B.dfm", std::string("\xFF\x0A\x00"
                                           "B\0",
                                           5));
  EXPECT_EQ(Run("replace --mode bde --folder src --subfolders"),
            "3||kvamigrate: <dir>\\src\\old\\B.DFM: Form data at offset 5: the signature TPF0 is missing.\n"
            "Leave the file out with --exclude 'old\\B.DFM' to convert the others. No file was changed.\n");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(Run("replace --mode bde --folder src --subfolders --exclude 'old\\B.DFM'"),
            "0|Replace procedure was performed sucessfully.\n|");
  EXPECT_NE(FTree.Read("src/old/B.pas"), kUnit);
}

TEST_F(CommandLineTest, OneOfTwoFilesOfOneNameIsLeftOut) {
  FTree.Write("src/P.dpr", "program P;\r\nuses B in 'old\\A.pas', A in 'A.pas';\r\nend.\r\n");
  FTree.Write("src/old/A.pas", kUnit);
  const std::string run = "replace --mode bde --project src/P.dpr";
  // The pattern 'A.pas' would fit both.
  EXPECT_EQ(
      Run(run),
      "3||kvamigrate: Two files named \"A.pas\" cannot be converted in one project run: "
      "\"<dir>\\src\\old\\A.pas\" and \"<dir>\\src\\A.pas\".\n"
      "Leave one of them out with --exclude 'old\\A.pas' and convert it in a run of its own. No file was "
      "changed.\n");
  EXPECT_EQ(Run(run + " --exclude 'old\\A.pas'")[0], '0');
  EXPECT_NE(FTree.Read("src/A.pas"), kUnit);
}

TEST_F(CommandLineTest, BackupFolders) {
  EXPECT_EQ(Run("replace --mode bde --folder src --backup-dir sub/back --no-log")[0], '0');
  EXPECT_EQ(FTree.Read("src/sub/back/A.~pas"), kUnit);
  EXPECT_EQ(Run("restore src/sub/back/RExpert.reu")[0], '0');
  EXPECT_EQ(Run("replace --mode bde --folder src --backup-dir " + FTree.HostPath("elsewhere"))[0], '0');
  EXPECT_EQ(FTree.Read("elsewhere/A.~pas"), kUnit);
  EXPECT_EQ(Run("restore elsewhere/RExpert.reu")[0], '0');
  EXPECT_EQ(Run("replace --mode bde --folder 'Q:\\src' --drive q=. --no-backup")[0], '0');
  EXPECT_EQ(FTree.Read("src/Wiz_Log.txt").find("Q:\\src\\A.pas") != std::string::npos, true);
  EXPECT_FALSE(FTree.Exists("src/RBackup"));
}

TEST_F(CommandLineTest, AProjectWithTwoSelectedUnits) {
  FTree.Write("src/P.dpr",
              "program P;\r\nuses A in 'A.pas' {A}, B in 'old\\B.pas' {B}, C in 'C.pas';\r\nend.\r\n");
  FTree.Write("src/C.pas", kUnit);
  EXPECT_EQ(Run("replace --mode bde --project src/P.dpr --unit a.PAS --unit C.pas"),
            "0|Replace procedure was performed sucessfully.\n|");
  EXPECT_NE(FTree.Read("src/A.pas"), kUnit);
  EXPECT_NE(FTree.Read("src/C.pas"), kUnit);
  EXPECT_EQ(FTree.Read("src/old/B.pas"), kUnit);
}

TEST_F(CommandLineTest, AnAliasIsOneNameInEveryEncoding) {
  FTree.Write("src/P.dpr", "program P;\r\nuses A in 'A.pas' {A}, C in 'C.pas' {C};\r\nend.\r\n");
  FTree.Write("src/C.pas", kUnit);
  FTree.Write("src/A.dfm",
              "object A: TForm\r\n object Db: TDatabase\r\n DatabaseName = 'Caf\xE9'\r\n end\r\nend\r\n");
  FTree.Write(
      "src/C.dfm",
      "\xEF\xBB\xBFobject C: TForm\r\n object Q: TQuery\r\n DatabaseName = 'CAF\xC3\xA9'\r\n end\r\nend\r\n");
  EXPECT_EQ(Run("replace --mode bde --project src/P.dpr")[0], '0');
  EXPECT_NE(FTree.Read("src/C.dfm").find("Connection = A.Db"), std::string::npos) << FTree.Read("src/C.dfm");
}

TEST_F(CommandLineTest, WrongCommandLines) {
  FTree.Write("src/P.dpr", "program P;\r\nuses A in 'A.pas' {A};\r\nend.\r\n");
  FTree.Write("bad.txt", "class TKVAQuery\n");
  FTree.Write("src/X.dproj", "<Project><ItemGroup><DCCReference Include='A.pas'/></ItemGroup></Project>junk");
  const std::pair<const char*, char> rows[] = {
      {"", '2'},
      {"nonsense", '2'},
      {"replace --mode bde", '2'},
      {"replace --mode odbc --folder src", '2'},
      {"replace --mode bde --folder src --project src/P.dpr", '2'},
      {"replace --mode bde --folder src --unit A.pas", '2'},
      {"replace --mode bde --folder none", '2'},
      {"replace --mode bde --folder src --exclude ''", '2'},
      {"replace --mode bde --folder src --codepage 7", '2'},
      {"replace --mode bde --folder src --drive C", '2'},
      {"replace --mode bde --folder src --drive C=none", '2'},
      {"replace --mode bde --folder 'Q:\\src'", '2'},
      {"replace --mode bde --project src/P.dpr --unit B.pas", '2'},
      {"replace --mode bde --project src/P.dpr --active Q", '2'},
      {"replace --mode bde --project src/none.dpr", '3'},
      {"replace --mode bde --project src/X.dproj", '3'},
      {"replace --mode bde --folder src --catalogue none.txt", '3'},
      {"replace --mode bde --folder src --catalogue bad.txt", '3'},
      {"restore none.reu", '3'},
      {"--help", '0'},
      {"replace --help", '0'},
  };
  for (const auto& [arguments, status] : rows) {
    const std::string result = Run(arguments);
    EXPECT_EQ(result[0], status) << arguments << ": " << result;
    EXPECT_EQ(result.substr(1, 2) == "||", status != '0') << arguments << ": " << result;
    EXPECT_GT(result.size(), 20U) << arguments;
  }
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
}

TEST_F(CommandLineTest, TheCatalogueReadsWhatItPrints) {
  const std::string printed = Run("catalogue");
  FTree.Write("mine.txt", printed.substr(2, printed.size() - 3));
  EXPECT_EQ(Run("catalogue --catalogue mine.txt"), printed);
  EXPECT_NE(printed.find("class TKVAUpdateSQL : TComponent\n  DataSet\n  DeleteSQL\n"), std::string::npos);
}

TEST(PathPatternTest, Patterns) {
  const std::tuple<const char*, const char*, bool> rows[] = {
      {"a.pas", "a.pas", true},
      {"a.pas", "sub\\A.PAS", true},
      {"sub/a.pas", "sub\\a.pas", true},
      {"sub\\a.pas", "x/sub/a.pas", false},
      {"*.dfm", "sub\\x.DFM", true},
      {"old/*", "old\\x\\y.pas", true},
      {"old/*", "older\\y.pas", false},
      {"*/x?.pas", "a\\x1.pas", true},
      {"*/x?.pas", "a\\x12.pas", false},
      {"x[0-9a].pas", "x7.pas", true},
      {"x[!0-9].pas", "x7.pas", false},
      {"x[.pas", "x[.pas", true},
      {"[\xC3\xA4].pas", "\xC3\x84.pas", true},
      {"?.pas", "\xE6\x97\xA5.pas", true},
      {"", "a", false},
      {"*a*a*a*b", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false},
  };
  for (const auto& [pattern, path, fits] : rows)
    EXPECT_EQ(TPathPatterns({pattern}).Match(path), fits) << pattern << " " << path;
}

}  // namespace
}  // namespace cli
