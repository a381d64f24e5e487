// The command line program with links that lead nowhere, streams that cannot be used, and a script as the
// wizard.
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

#include "tests/RunCommand.h"

namespace {

namespace fs = std::filesystem;

class PosixCommandTest : public testing::Test {
 protected:
  std::string Run(const std::string& arguments) { return tests::RunCommand(FTree, arguments); }

  tests::TTempTree FTree;
};

TEST_F(PosixCommandTest, ErrorsThatStopARun) {
  FTree.Link("loop", "loop");
  const std::pair<const char*, const char*> rows[] = {
      {"replace --mode bde --folder loop",
       "Cannot open \"<dir>\\loop\". The name of the file cannot be resolved by the system."},
      {"restore loop/x",
       "Cannot open \"<dir>\\loop\\x\". The name of the file cannot be resolved by the system."},
      {"catalogue >/dev/full", "Cannot write to standard output: No space left on device."},
      {"catalogue >&-", "Cannot write to standard output: Bad file descriptor."},
      {"form to-text - <&-", "Cannot read the standard input."},
  };
  for (const auto& [arguments, message] : rows)
    EXPECT_EQ(Run(arguments), std::string("3||kvamigrate: ") + message + "\n") << arguments;
}

// What no Windows path can name is skipped, and is missing where the run should have converted it.
TEST_F(PosixCommandTest, ARunIsNotWholeWithoutWhatItSkips) {
  FTree.Write("src/A.pas", "unit A;\r\nvar Q: TQuery;\r\n");
  FTree.Write("src/a:b.dfm", "object A: TForm\nend\n");
  FTree.Write("src/n:1.txt", "");
  const auto told = [](const std::string& names, const std::string& rest) {
    std::istringstream list(names);
    std::string text;
    for (std::string name; list >> name;)
      text += "kvamigrate: Skipped, because no Windows path can name it: <dir>/src/" + name + "\n";
    return text + rest;
  };
  const std::string run = "replace -q --no-backup --no-log --mode bde src ";
  EXPECT_EQ(Run(run), "0||" + told("a:b.dfm n:1.txt", ""));
  FTree.Write("src/c\xE4.pas", "");
  FTree.Write("src/d\\e/U.pas", "");
  const std::string all = "a:b.dfm c\\xE4.pas d\\e n:1.txt";
  EXPECT_EQ(Run(run), "1||" + told(all, "Left out, as reported above: 1.\n"));
  EXPECT_EQ(Run(run + "--subfolders"), "1||" + told(all, "Left out, as reported above: 2.\n"));
  EXPECT_EQ(Run(run + "--subfolders --exclude 'c*.pas' --exclude 'd?e/*'"), "0||" + told(all, ""));
  EXPECT_EQ(Run("form to-text --in-place src"),
            "1|Converted: 0, left as they are: 0, failed: 2\n|" + told(all, ""));
}

// The desktop program is searched beside this one.
TEST_F(PosixCommandTest, TheWizardGetsWhatWasTyped) {
  fs::copy(std::string(KVA_BINARY_DIR) + "/cli/kvamigrate", FTree.HostPath("kvamigrate"));
  FTree.Write("kvawizard", "#!/bin/sh\necho \"$@\"\n");
  fs::permissions(FTree.HostPath("kvawizard"), fs::perms(0755));
  const std::string run = "--version && ./kvamigrate wizard ";
  const std::string version = "0|kvamigrate " KVA_VERSION "\n";
  EXPECT_EQ(Run(run + "--drive c=. --catalogue x --codepage cp1251 -- -P.dpr >>out.txt"),
            version + "--wizard --codepage 1251 --drive c=. --catalogue x -- -P.dpr\n|");
  EXPECT_EQ(Run(run + ">>out.txt"), version + "--wizard --codepage 1252\n|");
}

}  // namespace
