// The command line of the program, and its command replace.
#include <filesystem>
#include <gtest/gtest.h>

#include "cli/PathPattern.h"
#include "tests/CommandTest.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

class CommandLineTest : public tests::TCommandTest {};

TEST_F(CommandLineTest, ReplaceAndRestore) {
  EXPECT_EQ(Run("replace --mode bde --folder src --subfolders"),
            "0|Replace procedure was performed sucessfully.\n|");
  EXPECT_EQ(Run("restore src/RBackup/RExpert.reu"), "0|Files were succefully restored.\n|");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(FTree.Read("src/A.dfm"), kForm);
  fs::remove(FTree.HostPath("src/RBackup/A.~pas"));
  EXPECT_EQ(Run("restore src"),
            "1|Failed to restore files.\n|kvamigrate: There is no backup for this line of the undo file: "
            "<dir>\\src\\A.pas=<dir>\\src\\RBackup\\A.~pas\n" +
                NothingRestored());
}

TEST_F(CommandLineTest, Summary) {
  EXPECT_EQ(
      tests::RunCommand(FTree, "replace --dry-run --mode bde src --exclude 'old/*' --report src/r.json"),
      "0||Files:     2 read, 2 to change\n"
      "Objects:   1 to convert: TQuery 1\n"
      "Leaves:    no-new-units 1\n"
      "Report:    src/r.json\n"
      "Next:      1 error, 0 warnings to look at\n");
  EXPECT_EQ(tests::RunCommand(FTree, "replace --mode bde src --exclude 'old/*' --report src/r.json"),
            "0|Replace procedure was performed sucessfully.\n|Files:     2 read, 2 changed\n"
            "Objects:   1 converted: TQuery 1\n"
            "Left:      no-new-units 1\n"
            "Backups:   " +
                fs::path("<dir>/src/RBackup").make_preferred().string() +
                "\n"
                "Report:    src/r.json\n"
                "Next:      1 error, 0 warnings to look at\n");
  EXPECT_EQ(tests::RunCommand(FTree, "replace --mode ibx src --no-backup"),
            "0|Replace procedure was performed sucessfully.\n|Files:     2 read, 0 changed\n"
            "Nothing was converted. Is it --mode bde? Subfolders need --subfolders.\n"
            "Left:      no-new-units 1\n"
            "Next:      1 error, 0 warnings to look at: run again with --report FILE.html, or \"kvamigrate "
            "check\"\n");
  Edit("src/A.pas", "unit A;\r\nuses Quorel, KVA, Velmar, KVAError;\r\nvar Q: TKVAQuery;\r\n");
  EXPECT_EQ(tests::RunCommand(FTree, "replace --mode bde src --no-backup"),
            "0|Replace procedure was performed sucessfully.\n|Files:     1 read, 0 changed\n"
            "There is nothing to convert. 1 unit names the new units: the sources are converted already.\n");
  FTree.MakeFolder("empty");
  EXPECT_EQ(tests::RunCommand(FTree, "replace --mode ibx empty --no-backup"),
            "0|Replace procedure was performed sucessfully.\n|Files:     0 read, 0 changed\n"
            "There is nothing to convert. The folder has no units of its own. Does it need --subfolders?\n");
  EXPECT_EQ(tests::RunCommand(FTree, "replace --mode ibx empty --report x.txt"),
            "2||kvamigrate: A report ends in .json, .sarif or .html, and not as \"x.txt\" does.\n");
}

// A plain `git apply` skips files below the top of a working tree, and refuses files outside of the folder.
TEST_F(CommandLineTest, APatchBelowTheTopOfAWorkingTree) {
  const bool hasGit = tests::HasGit();
  const std::string outside = hasGit ? "a\tb.pas" : "b.pas";  // Windows has no tabs in names
  FTree.Write("src/P.dpr", "program P;\r\nuses A in 'A.pas', B in '..\\" + outside + "';\r\nend.\r\n");
  FTree.Write(outside, "unit B;\nvar Q: TQuery;\n");
  FTree.MakeFolder(".git");
  const std::string shown = tests::RunCommand(FTree, "replace --mode bde src/P.dpr --diff");
  FTree.Write("the.patch", FTree.Read("out.txt"));
  EXPECT_EQ(shown, "0|" + FTree.Read("the.patch") +
                       "|Files:     3 read, 3 to change\n"
                       "Objects:   1 to convert: TQuery 1\n"
                       "Leaves:    no-new-units 2\n"
                       "Next:      2 errors, 0 warnings to look at\n"
                       "Apply the patch in the folder \"" +
                       fs::path("<dir>/src").make_preferred().string() +
                       "\" with: git --git-dir=. apply --unsafe-paths\n");
  if (!hasGit) GTEST_SKIP() << "there is no git to apply the patch";
  ASSERT_EQ(std::system(("git init -q " + FTree.HostPath()).c_str()), 0);
  const std::string apply =
      "cd " + FTree.HostPath("src") + " && git --git-dir=. apply --unsafe-paths ../the.patch";
  ASSERT_EQ(std::system(apply.c_str()), 0);
  const std::string names[] = {"src/A.pas", "src/A.dfm", outside};
  std::string patched, run;
  for (const std::string& name : names) patched += FTree.Read(name);
  ASSERT_EQ(std::system((apply + " -R").c_str()), 0);
  EXPECT_EQ(Run("replace -q --mode bde src/P.dpr"), "0||");
  for (const std::string& name : names) run += FTree.Read(name);
  EXPECT_EQ(patched, run);
}

TEST_F(CommandLineTest, TwoAtATimeAreRefused) {
  EXPECT_EQ(Run("replace -q --mode bde src"), "0||");
  {
    const auto lock = win::LockFolder(FTree.WindowsPath("src/RBackup"));
    EXPECT_EQ(Run("restore src"),
              "3||kvamigrate: Another run is using the folder \"<dir>\\src\\RBackup\".\n");
  }
  const auto lock = win::LockFolder(FTree.WindowsPath("src"));
  EXPECT_EQ(Run("replace -q --mode bde src"),
            "3||kvamigrate: Another run is using the folder \"<dir>\\src\".\n");
}

TEST_F(CommandLineTest, WhatIsLeftOutIsNamedAndCounts) {
  FTree.Write("src/old/B.dfm", std::string("\xFF\x0A\0B\0", 5));
  if (!FTree.Link("nowhere", "src/C.pas")) GTEST_SKIP() << "there are no links";
  const std::string form =
      "kvamigrate: <dir>\\src\\old\\B.DFM: Form data at offset 5: the signature TPF0 is missing.\n";
  EXPECT_EQ(
      Run("replace --mode bde src --subfolders --keep-going"),
      "1||kvamigrate: Cannot open file \"<dir>\\src\\C.pas\". The system cannot find the file specified.\n" +
          form + "Left out, as reported above: 2.\n");
  EXPECT_NE(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(Run("replace -q --mode bde src --exclude C.pas --skip-converted"), "0||");

  FTree.Write("src/P.dpr", "program P;\r\nuses A in 'A.pas', D in 'D.pas';\r\nend.\r\n");
  const std::string missing = "kvamigrate: <dir>\\src\\P.dpr(2): \"<dir>\\src\\D.pas\" does not exist.\n";
  EXPECT_EQ(Run("replace --mode bde src/P.dpr --no-backup"),
            "1||" + missing + "Left out, as reported above: 1.\n");
  EXPECT_EQ(Run("replace -q --mode bde src/P.dpr --no-backup --unit A.pas"), "0||" + missing);
}

TEST_F(CommandLineTest, AFileThatStopsARunIsNamedWithAWayOut) {
  FTree.Write("src/old/B.dfm", std::string("\xFF\x0A\x00"
                                           "B\0",
                                           5));
  EXPECT_EQ(Run("replace --mode bde --folder src --subfolders"),
            "3||kvamigrate: <dir>\\src\\old\\B.DFM: Form data at offset 5: the signature TPF0 is missing.\n"
            "Leave the file out with --exclude " +
                Quoted("old\\B.DFM") +
                ", or all such files with --keep-going, to convert the others. No file was changed.\n");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(Run("replace --mode bde --folder src --subfolders --exclude 'old\\B.DFM'"),
            "0|Replace procedure was performed sucessfully.\n|");
  EXPECT_NE(FTree.Read("src/old/B.pas"), kUnit);
}

TEST_F(CommandLineTest, OneOfTwoFilesOfOneNameIsLeftOut) {
  FTree.Write("src/P.dpr", "program P;\r\nuses B in 'old\\A.pas', A in 'A.pas';\r\nend.\r\n");
  FTree.Write("src/old/A.pas", kUnit);
  const std::string run = "replace --mode bde --project src/P.dpr";
  // The pattern 'A.pas' would match both.
  EXPECT_EQ(Run(run),
            "3||kvamigrate: Two files named \"A.pas\" cannot be converted in one project run: "
            "\"<dir>\\src\\old\\A.pas\" and \"<dir>\\src\\A.pas\".\n"
            "Leave one of them out with --exclude " +
                Quoted("old\\A.pas") + " and convert it in a run of its own. No file was changed.\n");
  EXPECT_EQ(Run(run + " --exclude 'old\\A.pas'")[0], '0');
  EXPECT_NE(FTree.Read("src/A.pas"), kUnit);
}

TEST_F(CommandLineTest, BackupFolders) {
  const std::pair<std::string, const char*> rows[] = {{"sub/back", "src/sub/back"},
                                                      {FTree.HostPath("elsewhere"), "elsewhere"},
                                                      {"../above", "above"},
                                                      {"./x/../back/", "src/back"},
                                                      {".", "src"}};
  for (const auto& [typed, folder] : rows) {
    EXPECT_EQ(Run("replace -q --mode bde --folder src --no-log --backup-dir " + typed), "0||") << typed;
    EXPECT_EQ(FTree.Read(std::string(folder) + "/A.~pas"), kUnit) << typed;
    EXPECT_EQ(Run(std::string("restore ") + folder), "0|Files were succefully restored.\n|") << typed;
    EXPECT_EQ(FTree.Read("src/A.pas"), kUnit) << typed;
  }
  EXPECT_FALSE(FTree.Exists("src/x"));
  if (!win::CanMapDrives()) return;
  EXPECT_EQ(Run("replace --mode bde --folder 'Q:\\src' --drive q=. --no-backup")[0], '0');
  EXPECT_EQ(FTree.Read("src/Wiz_Log.txt").find("Q:\\src\\A.pas") != std::string::npos, true);
  EXPECT_FALSE(FTree.Exists("src/RBackup"));
}

// An inherited connection declares the alias, too, if it is converted.
TEST_F(CommandLineTest, AnAliasIsOneNameInEveryEncoding) {
  FTree.Write("src/P.dpr", "program P; uses A in 'A.pas' {A}, B in 'old\\B.pas' {B}, C in 'C.pas' {C}; end.");
  FTree.Write("src/C.pas", kUnit);
  FTree.Write("src/A.dfm",
              "inherited A: TA\r\n inherited Db: TDatabase\r\n DatabaseName = 'Caf\xE9'\r\n end\r\nend");
  FTree.Write(
      "src/C.dfm",
      "\xEF\xBB\xBFobject C: TForm\r\n object Q: TQuery\r\n DatabaseName = 'CAF\xC3\xA9'\r\n end\r\nend\r\n");
  EXPECT_EQ(Run("replace --mode bde --project src/P.dpr --unit a.PAS --unit C.pas --complete inherited")[0],
            '0');
  EXPECT_EQ(FTree.Read("src/old/B.pas"), kUnit);
  EXPECT_NE(FTree.Read("src/C.dfm").find("Connection = A.Db"), std::string::npos) << FTree.Read("src/C.dfm");
}

// A form gets the object of a transaction only with the field of its unit.
TEST_F(CommandLineTest, ASkippedUnitGetsNoFieldAndItsFormNoObject) {
  const std::string unit =
      "unit A; interface uses DBTables, KVA; type TA = class(TForm) D: TDatabase; end; implementation {$R "
      "*.dfm} end.";
  FTree.Write("src/A.pas", unit);
  FTree.Write("src/A.dfm", "object A: TA\n  object D: TDatabase\n  end\nend\n");
  EXPECT_EQ(Run("replace -q --mode bde src --complete all --skip-converted"),
            "0||kvamigrate: \"<dir>\\src\\A.pas\" already names the new units. Was it converted before? It "
            "was left as it is.\n");
  EXPECT_EQ(FTree.Read("src/A.pas"), unit);
  EXPECT_EQ(FTree.Read("src/A.dfm"), "object A: TA\n  object D: TKVAConnection\n  end\nend\n");
}

TEST_F(CommandLineTest, WrongCommandLines) {
  FTree.Write("src/P.dpr", "program P;\r\nuses A in 'A.pas' {A};\r\nend.\r\n");
  FTree.Write("src/old/Q.dpk", "package Q;\r\nend.\r\n");
  FTree.Write("src/old/r.dproj", "");
  FTree.Write("src/old/R.dpr", "");
  FTree.MakeFolder("none");
  const std::pair<const char*, const char*> rows[] = {
      {"", "A command is missing.\nSee \"kvamigrate help\"."},
      {"nonsense", "There is no command \"nonsense\".\nSee \"kvamigrate help\"."},
      {"restor x", "There is no command \"restor\". Did you mean restore?\nSee \"kvamigrate help\"."},
      {"version", "There is no command \"version\". Did you mean --version?\nSee \"kvamigrate help\"."},
      {"--hlep", "There is no option --hlep. Did you mean --help?\nSee \"kvamigrate help\"."},
      {"--mode=bde replace src", "The option --mode goes after the command.\nSee \"kvamigrate help\"."},
      {"-x", "There is no option -x.\nSee \"kvamigrate help\"."},
      {"form", "The command \"form\" needs a second word: to-text or to-binary.\nSee \"kvamigrate help\"."},
      {"form totext a",
       "There is no command \"form totext\". Did you mean to-text?\nSee \"kvamigrate help\"."},
      {"to-text a", "There is no command \"to-text\". Did you mean form to-text?\nSee \"kvamigrate help\"."},
      {"help replace more", "The argument \"more\" is one too many.\nSee \"kvamigrate help\"."},
      {"replace --mode odbc src", "--mode takes bde or ibx, not \"odbc\".\nSee \"kvamigrate help replace\"."},
      {"replace --mode dbe",
       "--mode takes bde or ibx, not \"dbe\". Did you mean bde?\nSee \"kvamigrate help replace\"."},
      {"replace -qi",
       "The option -q takes no value; short options are given one by one.\nSee \"kvamigrate help replace\"."},
      {"replace --complete use",
       "--complete takes uses, inherited, transactions, layout, marks, or all, with commas between them, and "
       "not \"use\". Did you mean uses?\nSee \"kvamigrate help replace\"."},
      {"replace --mode", "The option --mode needs a value: bde|ibx.\nSee \"kvamigrate help replace\"."},
      {"replace --folder --no-log",
       "The option --folder needs a value: DIR.\nSee \"kvamigrate help replace\"."},
      {"replace --no-log=1", "The option --no-log takes no value.\nSee \"kvamigrate help replace\"."},
      {"replace --mode bde --mode bde",
       "The option --mode is given twice.\nSee \"kvamigrate help replace\"."},
      {"replace --folders src",
       "The command \"replace\" has no option --folders. Did you mean --folder?\nSee \"kvamigrate help "
       "replace\"."},
      {"replace --sub",
       "The command \"replace\" has no option --sub. Did you mean --subfolders?\nSee \"kvamigrate help "
       "replace\"."},
      {"restore x -z", "The command \"restore\" has no option -z.\nSee \"kvamigrate help restore\"."},
      {"restore", "An argument is missing: PATH.\nSee \"kvamigrate help restore\"."},
      {"restore a b", "The argument \"b\" is one too many.\nSee \"kvamigrate help restore\"."},
      {"completion tcsh",
       "The command \"completion\" takes bash or zsh or fish, not \"tcsh\".\nSee \"kvamigrate help "
       "completion\"."},
      {"restore none.reu", "There is no undo file or folder \"none.reu\"."},
      {"restore src", "There is no undo file in \"src\" or in a backup folder below it."},
      {"restore --all src/A.pas", "--all takes a folder, not an undo file."},
      {"replace --mode bde src --exclude ''",
       "An empty pattern matches no file.\nSee \"kvamigrate help replace\"."},
      {"replace --mode bde src --codepage koi8",
       "The code page \"koi8\" is not known. Known are 437, 850, 852, 866, 874, 932, 936, 949, 950, 1250, "
       "1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 65001.\nSee \"kvamigrate help replace\"."},
      {"replace --mode bde src --overwrite-backups", "--overwrite-backups needs --backup-dir."},
      {"replace -i --mode bde src", "--interactive needs terminals as standard input and output."},
      {"replace -i --diff --mode bde src", "--interactive cannot be used with --dry-run or --diff."},
      {"replace --ignore-space --mode bde src", "--ignore-space needs --diff or --interactive."},
      {"replace --folder src", "Say which components to replace: --mode bde or --mode ibx."},
      {"replace --mode bde", "Give one folder or one project to convert: --folder DIR or --project FILE."},
      {"replace --mode bde --folder src --project src/P.dpr",
       "Give one folder or one project to convert: --folder DIR or --project FILE."},
      {"replace --mode bde src --unit A.pas", "--unit cannot be used with a folder."},
      {"replace --mode bde src --active P", "--active cannot be used with a folder."},
      {"replace --mode bde src/P.dpr --subfolders", "--subfolders cannot be used with a project."},
      {"replace --mode bde --folder nowhere", "Target directory \"nowhere\" does not exist."},
      {"replace --mode bde --folder src/P.dpr",
       "\"src/P.dpr\" is a file. Give its folder, or a project with --project."},
      {"replace --mode bde src/A.pas",
       "\"src/A.pas\" is no project. Give a folder, or a project file such as Orders.dproj."},
      {"replace --mode bde ''", "A path is empty."},
      {"replace --mode bde --color always src", "--color needs --diff or --interactive."},
      {"replace --mode bde --report r.txt src",
       "A report ends in .json, .sarif or .html, and not as \"r.txt\" does."},
      {"restore src/A.pas",
       "\"<dir>\\src\\A.pas\" is no undo file: no run can have written any of its lines."},
      {"replace --mode bde --project src/none.dpr", "The project \"src/none.dpr\" does not exist."},
      {"replace --mode bde nowhere", "There is no folder or project \"nowhere\"."},
      {"replace --mode bde --project none", "There is no project in the folder \"none\"."},
      {"replace --mode bde --project src/old",
       "There is more than one project in the folder \"src/old\": Q.dpk, r.dproj."},
      {"replace --mode bde --project src/P.dpr --unit B.pas",
       "The project \"<dir>\\src\\P.dpr\" has no unit \"B.pas\"."},
      {"replace --mode bde --project src/P.dpr --active Q", "There is no project \"Q\", only: P.dpr."},
  };
  for (const auto& [arguments, message] : rows)
    EXPECT_EQ(Run(arguments), std::string("2||kvamigrate: ") + message + "\n") << arguments;
  EXPECT_EQ(FTree.Names("src"), (std::vector<std::string>{"A.dfm", "A.pas", "P.dpr", "old"}));
}

TEST_F(CommandLineTest, WrongDrives) {
  if (!win::CanMapDrives()) {
    EXPECT_EQ(
        Run("replace --mode bde src --drive C=src"),
        "2||kvamigrate: The command \"replace\" has no option --drive.\nSee \"kvamigrate help replace\".\n");
    EXPECT_EQ(Run("help replace").find("--drive") + Run("help restore").find("--drive"),
              2 * std::string::npos);
    return;
  }
  const std::pair<const char*, const char*> rows[] = {
      {"replace --mode bde src --drive C",
       "--drive takes a letter and a folder, as in C=/srv/checkout, and not \"C\".\nSee \"kvamigrate help "
       "replace\"."},
      {"replace --mode bde src --drive C=nowhere", "--drive C=nowhere: there is no such folder."},
      {"replace --mode bde 'Q:\\src'",
       "\"Q:\\src\" cannot be written as a Windows path; is its drive mapped?"},
  };
  for (const auto& [arguments, message] : rows)
    EXPECT_EQ(Run(arguments), std::string("2||kvamigrate: ") + message + "\n") << arguments;
}

TEST_F(CommandLineTest, ErrorsThatStopARun) {
  FTree.Write("bad.txt", "class TKVAQuery\n");
  FTree.Write("src/X.dproj", "<Project><ItemGroup><DCCReference Include='A.pas'/></ItemGroup></Project>junk");
  const std::pair<const char*, const char*> rows[] = {
      {"replace --mode bde --project src/X.dproj",
       "<dir>\\src\\X.dproj(1): this is not well-formed XML: there is content outside of the root element."},
      {"replace --mode bde src --catalogue none.txt",
       "Cannot open file \"<dir>\\none.txt\". The system cannot find the file specified."},
      {"replace --mode bde src --catalogue bad.txt", "bad.txt: class \"TKVAConnection\" is missing."},
  };
  for (const auto& [arguments, message] : rows)
    EXPECT_EQ(Run(arguments), std::string("3||kvamigrate: ") + message + "\n") << arguments;
}

TEST_F(CommandLineTest, EachWayToSayTheSame) {
  FTree.Write("src/P.dpr", "program P;\r\nuses A in 'A.pas';\r\nend.\r\n");
  FTree.Write("src/P.bpg", "not looked at");
  const char* const rows[] = {
      "--mode bde --folder src",
      "--mode=BDE src",
      "src --mode Bde --codepage cp1251",
      "--mode bde --project src/P.dpr",
      "--mode bde src/P.dpr",
      "--mode bde --project src --codepage UTF-8",
      "--mode bde -- src",
      "--mode bde --codepage windows-1251 --folder=src",
  };
  for (const std::string row : rows) {
    EXPECT_EQ(Run("replace --no-log --no-backup " + row), "0|Replace procedure was performed sucessfully.\n|")
        << row;
    EXPECT_NE(FTree.Read("src/A.pas"), kUnit) << row;
    FTree.Write("src/A.pas", kUnit);
  }
  EXPECT_EQ(Run("replace -q --mode bde src"), "0||");
}

TEST_F(CommandLineTest, HelpIsTheSameWhereverItIsAskedFor) {
  EXPECT_EQ(Run("--version"), "0|kvamigrate " KVA_VERSION "\n|");
  EXPECT_EQ(Run("--help"), Run("help"));
  const std::string replace = Run("help replace");
  EXPECT_EQ(replace.substr(0, 92),
            "0|Usage: kvamigrate replace --mode bde|ibx [--folder] DIR|[--project] FILE [OPTIONS]\n\nConver");
  EXPECT_EQ(Run("replace --help"), replace);
  EXPECT_EQ(Run("replace --mode odbc -h --nonsense"), replace);
  EXPECT_EQ(Run("form to-text --help"), Run("help form to-text"));
  EXPECT_EQ(Run("help form"), Run("help form to-text").substr(0, Run("help form to-text").size() - 1) + "\n" +
                                  Run("help form to-binary").substr(2));
  EXPECT_EQ(Run("replace --version"), Run("--version"));
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
