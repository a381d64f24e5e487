// Runs with failures: the errors that they raise, and that every original is unchanged or restorable.
#include <filesystem>
#include <gtest/gtest.h>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/OtherForms.h"
#include "MigWizard/run/UnitList.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "target/KVAReplacer.h"
#include "tests/RecordingFileSystem.h"
#include "tests/RunTree.h"

namespace mig {
namespace {

namespace fs = std::filesystem;
using tests::kForm;
using tests::kUnit;
using RunTest = tests::TRunTree;

TEST_F(RunTest, KilledBeforeTheLastStepLeavesAllOriginals) {
  const auto before = Sources();
  Replacer().OnProgress = [&](const TRunProgress& progress) {
    if (progress.FileName.empty()) throw rtl::EAbort("stop");
  };
  EXPECT_EQ(Failure<rtl::EAbort>(), "stop");
  EXPECT_EQ(Sources(), before);
  EXPECT_TRUE(TempFolderIsEmpty());
  EXPECT_EQ(FTree.Names("src/RBackup"), (std::vector<std::string>{"A.~DFM", "A.~pas", "Sub"}));
  EXPECT_EQ(FTree.Names("src/RBackup/Sub"), (std::vector<std::string>{"B.~DFM", "B.~pas"}));
  EXPECT_TRUE(Read("src/Wiz_Log.txt").ends_with("1 change(s)\r\n\r\n"));
}

TEST_F(RunTest, AWarningMayEndTheRun) {
  const auto before = Sources();
  FTree.MakeFolder("src/RBackup/A.~pas");
  Replacer().OnWarning = [](std::string_view message) { throw rtl::EAbort(std::string(message)); };
  EXPECT_EQ(Failure<rtl::EAbort>(), "No backup of \"<dir>\\src\\A.pas\" could be made. Access is denied.");
  EXPECT_EQ(Sources(), before);
  EXPECT_TRUE(TempFolderIsEmpty());
}

// Independent of how far the run has read ahead, and of which thread converts which file.
TEST_F(RunTest, OnlyTheFilesBeforeTheOneThatFailsHaveBackups) {
  constexpr int kFiles = 150;
  const auto name = [](int i) { return std::to_string(1000 + i); };
  for (int i = 0; i < kFiles; ++i) FTree.Write("many/" + name(i) + ".pas", kUnit + std::string(9000, ' '));
  FMigration.Options().Directory = FTree.WindowsPath("many");
  FMigration.Options().BackupDir = FTree.WindowsPath("many\\RBackup");
  for (const int bad : {0, 1, 17, 60, kFiles - 1}) {
    const std::string file = "many/" + name(bad) + ".pas";
    const std::string text = FTree.Read(file);
    FTree.Write(file, "\xFF\xFEodd");
    EXPECT_EQ(Failure<EFileConversion>(),
              "<dir>\\many\\" + name(bad) + ".pas: UTF-16 text with an odd number of bytes.");
    std::vector<std::string> backups;
    for (int i = 0; i < bad; ++i) backups.push_back(name(i) + ".~pas");
    EXPECT_EQ(FTree.Names("many/RBackup"), backups);
    EXPECT_TRUE(Read("many/Wiz_Log.txt").ends_with(name(bad) + ".pas\r\n\r\n"));
    EXPECT_TRUE(TempFolderIsEmpty());
    FTree.Write(file, text);
    EXPECT_EQ(FTree.Read("many/" + name(kFiles - 1) + ".pas"), kUnit + std::string(9000, ' '));
    fs::remove_all(FTree.HostPath("many/RBackup"));
  }
}

// A file that cannot be read ends the run at its turn, not when it is read ahead.
TEST_F(RunTest, AFileThatCannotBeReadEndsTheRunAtItsTurn) {
  FTree.Write("src/B.pas", kUnit);
  fs::create_directory(FTree.HostPath("src/Z.pas"));
  FMigration.Options().IncludeSubDirs = false;
  EXPECT_EQ(Failure<rtl::EFOpenError>(), "Cannot open file \"<dir>\\src\\Z.pas\". Access is denied.");
  EXPECT_EQ(FTree.Names("src/RBackup"), (std::vector<std::string>{"A.~pas", "B.~pas"}));
  EXPECT_TRUE(Read("src/Wiz_Log.txt").ends_with("Z.pas\r\n\r\n"));
}

// Everything is flushed to the disk before the first original is replaced.
TEST_F(RunTest, TheOrderOfTheLastStep) {
  const struct {
    bool IsStrict;
    const char* Steps;
  } rows[] = {{false, "Backup Flush Replace Replace Replace Replace Create "},
              {true,
               "Backup Flush CreateOwn FlushFile Move FlushFolder Replace Replace Replace Replace Flush Move "
               "FlushFolder "}};
  for (const auto& row : rows) {
    FMigration.Options().Policy.Strict = row.IsStrict;
    tests::TRecordingFileSystem files(win::FileSystem());
    {
      const win::TFileSystemOverride inForce(files);
      EXPECT_TRUE(Replacer().Replace());
    }
    std::string steps;
    for (const std::string& call : files.Calls()) {
      const std::string step = call.substr(0, call.find(' '));
      if (step == "CopyToOwn") {
        steps = "Backup ";
      } else if (step == "Copy" || step == "CopyOver") {
        steps += "Replace ";
      } else if (step == "Flush" || step == "FlushFile" || step == "FlushFolder" || step == "Move" ||
                 (step.starts_with("Create") && call.find("RExpert") != std::string::npos)) {
        steps += step + " ";
      }
    }
    EXPECT_EQ(steps, row.Steps);
    fs::remove_all(FTree.HostPath("src/RBackup"));
    for (const char* name : {"src/A", "src/Sub/B"}) {
      FTree.Write(std::string(name) + ".pas", kUnit);
      FTree.Write(std::string(name) + ".dfm", kForm);
    }
  }
}

// The target folder of a link is not scanned, and its files are not replaced.
TEST_F(RunTest, LinksToFoldersAreNotFollowed) {
  FTree.Write("elsewhere/C.pas", kUnit);
  FTree.Write("elsewhere/Other.dfm", kForm);
  FTree.Write("src/Other.dfm", kForm);
  if (!FTree.Link(FTree.HostPath("elsewhere"), "src/Link")) GTEST_SKIP() << "there are no links";
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(Read("elsewhere/C.pas"), kUnit);
  EXPECT_FALSE(fs::exists(FTree.HostPath("src/RBackup/Link")));
  rtl::TStringList units;
  std::vector<TLeftOut> leftOut;
  std::vector<std::string> forms;
  InitUnitList(FMigration.Options(), {}, units, leftOut, &forms);
  // A, B and Other, not that of the link.
  EXPECT_EQ(FindOtherForms(FMigration.Options(), {}, {}, forms).size(), 3u);
}

TEST_F(RunTest, ProgressCountsFiles) {
  std::string steps;
  Replacer().OnProgress = [&](const TRunProgress& progress) {
    steps += std::to_string(progress.Done) + "/" + std::to_string(progress.Known) + " " +
             rtl::ExtractFileName(progress.FileName) + "\n";
  };
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(steps, "0/2 A.pas\n1/3 B.pas\n2/4 A.DFM\n3/4 B.DFM\n4/4 \n");
}

TEST_F(RunTest, BadInput) {
  struct TRow {
    const char* Name;
    std::function<void()> Prepare;
    const char* Message;
  };
  const auto remove = [this](const char* name) {
    return [this, name] { fs::remove_all(FTree.HostPath(name)); };
  };
  const TRow rows[] = {
      {"a form that vanishes",
       [this] {
         Replacer().OnProgress = [this](const TRunProgress& progress) {
           if (progress.FileName.ends_with("A.DFM")) fs::remove(FTree.HostPath("src/Sub/B.dfm"));
         };
       },
       "Cannot open file \"<dir>\\src\\Sub\\B.DFM\". The system cannot find the file specified."},
      {"odd UTF-16",
       [this] {
         FTree.Write("src/A.dfm",
                     "\xFF\xFE"
                     "abc");
       },
       "<dir>\\src\\A.DFM: UTF-16 text with an odd number of bytes."},
      {"a damaged binary form",
       [this] {
         FTree.Write("src/A.dfm", std::string("\xFF\x0A\x00"
                                              "A\0\x30\x10xxxxTPF",
                                              14));
       },
       "<dir>\\src\\A.DFM: Form data at offset 11: the signature TPF0 is missing."},
      {"a backup folder that is a file", [this] { FTree.Write("src/RBackup", "x"); },
       "Failed to create directory."},
      {"no place for the temporary folder", remove("tmp"), "Failed to create directory."},
      {"a log that is a folder", [this] { fs::create_directory(FTree.HostPath("src/Wiz_Log.txt")); },
       "Cannot create file \"<dir>\\src\\Wiz_Log.txt\". Access is denied."},
      {"a folder that is named like a unit",
       [this] {
         fs::create_directory(FTree.HostPath("src/X.pas"));
         FMigration.Options().IncludeSubDirs = false;
       },
       "Cannot open file \"<dir>\\src\\X.pas\". Access is denied."},
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Name);
    Replacer().OnProgress = nullptr;
    FMigration.Options().IncludeSubDirs = true;
    fs::remove_all(FTree.HostPath("src"));
    fs::create_directory(FTree.HostPath("tmp"));
    FTree.Write("src/A.pas", kUnit);
    FTree.Write("src/A.dfm", kForm);
    FTree.Write("src/Sub/B.pas", kUnit);
    FTree.Write("src/Sub/B.dfm", kForm);
    row.Prepare();
    EXPECT_EQ(Failure<rtl::Exception>(), row.Message);
    EXPECT_EQ(Read("src/A.pas"), kUnit);
    EXPECT_EQ(Read("src/Sub/B.pas"), kUnit);
    EXPECT_TRUE(!fs::exists(FTree.HostPath("tmp")) || TempFolderIsEmpty());
  }
}

TEST_F(RunTest, ReadOnlyFiles) {
  fs::permissions(FTree.HostPath("src/A.pas"), fs::perms(0444));
  EXPECT_FALSE(Replacer().Replace());
  EXPECT_EQ(
      ShownWarnings(),
      "\"<dir>\\src\\A.pas\" could not be replaced. Access is denied.\n"
      "\"<dir>\\src\\Sub\\B.pas\" was not replaced, because another file or folder before it failed.\n"
      "\"<dir>\\src\\Sub\\B.DFM\" was not replaced, because another file or folder before it failed.\n");
  // The next run replaces the read-only backup of that run.
  fs::permissions(FTree.HostPath("src/A.pas"), fs::perms(0644));
  FTree.Write("src/A.pas", "{ TQuery, edited }");
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_TRUE(Replacer().Restore(UndoFile()));
  EXPECT_EQ(Read("src/A.pas"), "{ TQuery, edited }");
}

TEST_F(RunTest, RunWithoutChangesKeepsTheUndoFile) {
  EXPECT_TRUE(Replacer().Replace());
  const std::string undo = Read("src/RBackup/RExpert.reu");
  EXPECT_FALSE(undo.empty());
  FTree.Write("src/A.pas", "unit A;");
  FTree.Write("src/Sub/B.pas", "unit B;");
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(Read("src/RBackup/RExpert.reu"), undo);
  EXPECT_NE(Read("src/Wiz_Log.txt").find("Backup file: "), std::string::npos);

  FMigration.Options().BackupDir = JoinPath(FTree.WindowsPath(), "new\\deep\\");
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_TRUE(fs::exists(FTree.HostPath("new/deep/RExpert.reu")));
  EXPECT_FALSE(Replacer().Restore(UndoFile()));
}

TEST_F(RunTest, OptionsAreHonoured) {
  FMigration.Options().MakeBackup = false;
  FMigration.Options().WriteLog = false;
  FMigration.Options().ViewLog = true;
  FMigration.Options().IncludeSubDirs = false;
  fs::permissions(FTree.HostPath("src/A.dfm"), fs::perms(0640));
  const fs::perms before = fs::status(FTree.HostPath("src/A.dfm")).permissions();
  Replacer().OnExclude = [](std::string_view name) {
    return name.ends_with(".pas") && name.find("src\\B") != name.npos;
  };
  FTree.Write("src/B.pas", kUnit);
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(Read("src/A.dfm"),
            "object A: TForm\r\n    object Q: TKVAQuery\r\n    Left = 1\r\n    AutoCommit = True\r\n  "
            "end\r\nend\r\n");
  EXPECT_EQ(Read("src/B.pas"), kUnit);
  EXPECT_EQ(Read("src/Sub/B.pas"), kUnit);
  EXPECT_FALSE(fs::exists(FTree.HostPath("src/RBackup")));
  EXPECT_FALSE(fs::exists(FTree.HostPath("src/Wiz_Log.txt")));
  EXPECT_EQ(fs::status(FTree.HostPath("src/A.dfm")).permissions(), before);
}

TEST_F(RunTest, NamesOfAllKinds) {
  for (const char* name : {"src/a=b.pas", "src/Ж\xE6\x97\xA5.pas", "src/ä ö.PAS"}) FTree.Write(name, kUnit);
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(FWarnings.size(), 1U);
  EXPECT_FALSE(Replacer().Restore(UndoFile()));  // "a=b.pas" makes its line ambiguous
  EXPECT_NE(Read("src/a=b.pas"), kUnit);
  EXPECT_EQ(Read("src/RBackup/a=b.~pas"), kUnit);
  EXPECT_EQ(Read("src/RBackup/Ж\xE6\x97\xA5.~pas"), kUnit);
  EXPECT_EQ(Read("src/RBackup/ä ö.~PAS"), kUnit);
}

// The files before the failed one stay restored, those after it are not touched, and all are flushed.
TEST_F(RunTest, ARestoreEndsWithTheFirstFailure) {
  const auto before = Sources();
  EXPECT_TRUE(Replacer().Replace());
  const auto converted = Sources();
  const std::string notRestored =
      "\"<dir>\\src\\Sub\\B.pas\" could not be restored, nor were the files after it in the undo file. There "
      "is not enough space on the disk.\n";
  const struct {
    const char* Failing;
    bool Restored;
    std::string Calls, Warnings;
  } rows[] = {
      {"Copy <dir>\\src\\RBackup\\Sub\\B.~pas -> <dir>\\src\\Sub\\B.pas", false, "A.pas B.pas ", notRestored},
      {"Flush", false, "A.pas B.pas A.DFM B.DFM Flush ",
       "The files are restored, but they may not all be on the disk. There is not enough space on the "
       "disk.\n"},
      {"", true, "A.pas B.pas A.DFM B.DFM Flush ", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Failing);
    for (const auto& [name, text] : converted) FTree.Write(name, text);
    FWarnings.clear();
    std::string calls;
    tests::TRecordingFileSystem files(win::FileSystem());
    files.OnCall = [&](const std::string& call) {
      if (call.starts_with("Copy")) calls += rtl::ExtractFileName(call) + " ";
      if (call == "Flush") calls += "Flush ";
      return Shown(call) == row.Failing ? win::ERROR_DISK_FULL : win::ERROR_SUCCESS;
    };
    const win::TFileSystemOverride inForce(files);
    EXPECT_EQ(Replacer().Restore(UndoFile()), row.Restored);
    EXPECT_EQ(calls, row.Calls);
    EXPECT_EQ(ShownWarnings(), row.Warnings);
    EXPECT_EQ(Read("src/A.pas"), kUnit);
    EXPECT_EQ(Sources() == before, row.Warnings != notRestored);
  }
}

TEST_F(RunTest, RestoreChecksBeforeItTouches) {
  EXPECT_TRUE(Replacer().Replace());
  const auto converted = Sources();
  fs::rename(FTree.HostPath("src/RBackup/Sub/B.~DFM"), FTree.HostPath("aside"));
  EXPECT_FALSE(Replacer().Restore(UndoFile()));
  EXPECT_EQ(Sources(), converted);
  fs::rename(FTree.HostPath("aside"), FTree.HostPath("src/RBackup/Sub/B.~DFM"));
  fs::remove(FTree.HostPath("src/A.dfm"));
  for (int round = 0; round < 2; ++round) {
    EXPECT_TRUE(Replacer().Restore(UndoFile()));
    EXPECT_EQ(Read("src/A.pas"), kUnit);
    EXPECT_EQ(Read("src/Sub/B.dfm"), kForm);
  }
  EXPECT_EQ(Read("src/A.DFM"), kForm);  // created again, under the name in the undo file
  EXPECT_THROW((void)Replacer().Restore(JoinPath(FTree.WindowsPath(), "none.reu")), rtl::EFOpenError);
}

}  // namespace
}  // namespace mig
