// The command restore, and backups of several runs.
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/CommandTest.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

class RestoreCommandTest : public tests::TCommandTest {};

TEST_F(RestoreCommandTest, RestoreNamesWhatWouldBeLost) {
  EXPECT_EQ(Run("replace -q --mode bde --folder src --subfolders"), "0||");
  const std::string converted = FTree.Read("src/A.dfm");
  Edit("src/A.pas", "edited");
  Edit("src/old/B.pas", kUnit);  // edited, but back to its original text
  EXPECT_EQ(Run("restore --list src"),
            "0|edited     <dir>\\src\\A.pas\n"
            "restore    <dir>\\src\\old\\B.pas\n"
            "restore    <dir>\\src\\A.DFM\n|");
  EXPECT_EQ(Run("restore src"),
            "1|Failed to restore files.\n|kvamigrate: This file was edited after the run: <dir>\\src\\A.pas\n"
            "Nothing was restored. --force restores these files, too; --only restores a part.\n");
  EXPECT_EQ(FTree.Read("src/A.dfm"), converted);
  EXPECT_EQ(Run("restore src --only '*.pas' --only none"),
            "1|Failed to restore files.\n|kvamigrate: This file was edited after the run: <dir>\\src\\A.pas\n"
            "Nothing was restored. --force restores these files, too; --only restores a part.\n");
  EXPECT_EQ(Run("restore src --only src/a.dfm"), "0|Files were succefully restored.\n|");
  EXPECT_EQ(FTree.Read("src/A.dfm"), kForm);
  EXPECT_EQ(FTree.Read("src/A.pas"), "edited");
  EXPECT_EQ(Run("restore src --only none"), "2||kvamigrate: No file of the undo file matches --only.\n");
  EXPECT_EQ(Run("restore src --force"), "0|Files were succefully restored.\n|");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
}

TEST_F(RestoreCommandTest, RestoreRefusesLinesThatNoRunWrites) {
  const auto line = [&](const std::string& original, const std::string& backup) {
    return FTree.WindowsPath(original) + "=" + FTree.WindowsPath(backup) + "\r\n";
  };
  FTree.Write("b/a.~pas", "evil");
  FTree.Write("b/.~bashrc", "evil");
  FTree.Write("c/a.~pas", "evil");
  FTree.Write("c/d.~pas", "evil");
  FTree.Write(".bashrc", "mine");
  FTree.Write("b/RExpert.reu", line(".bashrc", "b\\.~bashrc") + line("a.pas", "c\\a.~pas") +
                                   FTree.WindowsPath("d.pas") + "=" + FTree.WindowsPath("b") +
                                   "\\..\\c\\d.~pas\r\n" + line("x.pas", "b\\a.~pas") + "\x1B[2Jno\r\n" +
                                   line("b.dpr", "b\\b.~dpr"));
  EXPECT_EQ(
      Run("restore b/RExpert.reu"),
      "1|Failed to restore files.\n|kvamigrate: No run can have written this line of the undo file: "
      "<dir>\\.bashrc=<dir>\\b\\.~bashrc\n"
      "kvamigrate: No run can have written this line of the undo file: <dir>\\a.pas=<dir>\\c\\a.~pas\n"
      "kvamigrate: No run can have written this line of the undo file: <dir>\\d.pas=<dir>\\b\\..\\c\\d.~pas\n"
      "kvamigrate: No run can have written this line of the undo file: <dir>\\x.pas=<dir>\\b\\a.~pas\n"
      "kvamigrate: No run can have written this line of the undo file: \\x1B[2Jno\n"
      "kvamigrate: There is no backup for this line of the undo file: <dir>\\b.dpr=<dir>\\b\\b.~dpr\n" +
          NothingRestored());
  EXPECT_EQ(FTree.Read(".bashrc"), "mine");
}

TEST_F(RestoreCommandTest, RestoreHintsAtMovedBackupsAndMissingDrives) {
  if (!win::CanMapDrives()) GTEST_SKIP() << "drives are those of the machine";
  const std::string refused =
      "1|Failed to restore files.\n|kvamigrate: There is no backup for this line of the undo file: "
      "%\\src\\A.pas=%\\src\\RBackup\\A.~pas\n"
      "kvamigrate: There is no backup for this line of the undo file: %\\src\\A.DFM=%\\src\\RBackup\\A.~DFM\n"
      "Nothing was restored. Were the backups moved, or was the run given --drive options that are missing "
      "here?\n";
  const auto at = [&refused](std::string_view folder) {
    std::string text = refused;
    for (size_t place; (place = text.find('%')) != std::string::npos;) text.replace(place, 1, folder);
    return text;
  };
  EXPECT_EQ(Run("replace -q --mode bde --drive Q=. --folder 'Q:\\src'"), "0||");
  EXPECT_EQ(Run("restore --force src"), at("Q:"));
  EXPECT_EQ(Run("restore --drive Q=. src"), "0|Files were succefully restored.\n|");
  EXPECT_EQ(Run("replace -q --mode bde --overwrite-backups --backup-dir RBackup src"), "0||");
  fs::rename(FTree.HostPath("src"), FTree.HostPath("moved"));
  EXPECT_EQ(Run("restore moved"), at("<dir>"));
}

// The path of the folder may differ from that of the run.
TEST_F(RestoreCommandTest, RestoreThroughALinkAndFromAJournal) {
  if (!FTree.Link("src", "link")) GTEST_SKIP() << "there are no links";
  EXPECT_EQ(Run("replace -q --mode bde --folder src"), "0||");
  fs::rename(FTree.HostPath("src/RBackup/RExpert.reu"), FTree.HostPath("src/RBackup/RExpert.reu.journal"));
  EXPECT_EQ(Run("restore link --only A.pas"), "0|Files were succefully restored.\n|");
  EXPECT_TRUE(FTree.Exists("src/RBackup/RExpert.reu.journal"));
  EXPECT_EQ(Run("restore link"), "0|Files were succefully restored.\n|");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(FTree.Names("src/RBackup"), (std::vector<std::string>{"A.~DFM", "A.~pas"}));
  EXPECT_EQ(Run("restore link"),
            "2||kvamigrate: There is no undo file in \"link\" or in a backup folder below it.\n");
}

TEST_F(RestoreCommandTest, SeveralRunsAreTakenBackLastFirst) {
  const std::string run = "replace --mode bde --folder src";
  EXPECT_EQ(Run(run), "0|Replace procedure was performed sucessfully.\n|");
  Edit("src/A.pas", "unit A; { edited } var X: TTable;");
  EXPECT_EQ(Run(run),
            "0|Replace procedure was performed sucessfully.\n|The backups go to \"<dir>\\src\\RBackup.2\", "
            "because the backups of earlier runs are kept.\n");
  EXPECT_EQ(Run("restore --all src"),
            "1|Failed to restore files.\n|kvamigrate: This file was edited after the run: <dir>\\src\\A.pas\n"
            "Nothing was restored. --force restores these files, too; --only restores a part.\n");
  EXPECT_EQ(Run("restore src"),
            "0|Files were succefully restored.\n|Undoing the last run, of "
            "\"<dir>\\src\\RBackup.2\\RExpert.reu\". With --all, earlier runs are undone, too.\n");
  EXPECT_EQ(FTree.Read("src/A.pas"), "unit A; { edited } var X: TTable;");
  EXPECT_EQ(Run("restore -q --all --force src"), "0||");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(FTree.Read("src/A.dfm"), kForm);
}

TEST_F(RestoreCommandTest, NoRunDestroysTheUndoFileOfAnother) {
  const std::string run = "replace --mode bde --folder src --backup-dir RBackup";
  EXPECT_EQ(Run(run + " -q"), "0||");
  FTree.Write("src/A.pas", kUnit);
  EXPECT_EQ(
      Run(run),
      "3||kvamigrate: The backup folder \"<dir>\\src\\RBackup\" holds the undo file of an earlier run, which "
      "this run would overwrite.\n"
      "Choose another folder with --backup-dir, or overwrite the earlier backups with "
      "--overwrite-backups.\n");
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
  EXPECT_EQ(Run(run + " -q --overwrite-backups"), "0||");
  EXPECT_NE(FTree.Read("src/A.pas"), kUnit);

  fs::rename(FTree.HostPath("src/RBackup/RExpert.reu"), FTree.HostPath("src/RBackup/RExpert.reu.journal"));
  FTree.Write("src/A.pas", kUnit);
  const bool hasDrives = win::CanMapDrives();
  for (const char* const options :
       {"", " --no-backup", " --backup-dir other", " --backup-dir RBackup --overwrite-backups"})
    EXPECT_EQ(Run(std::string("replace --mode bde src") + (hasDrives ? " --drive q=src/old" : "") + options),
              "3||kvamigrate: A run was interrupted while it replaced files; their backups are in "
              "\"<dir>\\src\\RBackup\". Restore them before the next run.\n"
              "Type: kvamigrate restore " +
                  Quoted("<dir>\\src\\RBackup\\RExpert.reu.journal") +
                  (hasDrives ? " --drive q='src/old'\n" : "\n"))
        << options;
  EXPECT_EQ(FTree.Read("src/A.pas"), kUnit);
}

}  // namespace
}  // namespace cli
