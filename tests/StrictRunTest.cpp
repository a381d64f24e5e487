// Strict runs: after any failure, kill or concurrent change, every byte is in its file or restored by one
// restore.
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>

#include "MigWizard/run/Restore.h"
#include "MigWizard/run/UndoState.h"
#include "host/ProjectChoice.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "tests/ErrorOf.h"
#include "tests/HexText.h"
#include "tests/RecordingFileSystem.h"
#include "tests/RunTree.h"

namespace mig {
namespace {

namespace fs = std::filesystem;
using tests::kForm;
using tests::kUnit;
using TFiles = std::map<std::string, std::string>;

constexpr char kBadForm[] = "\xFF\x0A\x00";

class StrictRunTest : public tests::TRunTree {
 protected:
  StrictRunTest() { Policy().Strict = true; }

  TRunPolicy& Policy() { return FMigration.Options().Policy; }
  std::string BackupDir() { return FMigration.Options().BackupDir; }
  void Reset(const TFiles& files) {
    fs::remove_all(FTree.HostPath("src"));
    fs::remove_all(FTree.HostPath("tmp"));
    fs::create_directory(FTree.HostPath("tmp"));
    for (const auto& [name, text] : files) FTree.Write(name, text);
    FWarnings.clear();
  }
  // Runs with `files` as the current file system. Returns "True", "False", or the message of the exception.
  std::string Outcome(win::TFileSystem& files) {
    const win::TFileSystemOverride inForce(files);
    try {
      return Replacer().Replace() ? "True" : "False";
    } catch (const rtl::Exception& error) {
      return Shown(error.what());
    }
  }
  // Restores the files as a user would, from the contents of the folder.
  void TakeBack() {
    const TUndoState found = FindUndoState(BackupDir());
    if (found == TUndoState::None) return;
    EXPECT_TRUE(Replacer().Restore(found == TUndoState::Journal ? JournalOf(BackupDir()) : UndoFile()));
  }
};

// Each operation fails once, alone or with all later ones, as if the program had been killed there.
TEST_F(StrictRunTest, WhateverFailsEveryByteComesBack) {
  const TFiles before = Sources();
  for (const bool isKilled : {false, true}) {
    size_t operations = 0;
    for (size_t n = 0; n <= operations; ++n) {  // 0: none fails
      SCOPED_TRACE(testing::Message() << n << " " << isKilled);
      tests::TRecordingFileSystem faulty(win::FileSystem());
      if (isKilled && n > 0) {
        faulty.FailFrom(n, win::ERROR_DISK_FULL);
      } else {
        faulty.FailAt(n, win::ERROR_DISK_FULL);
      }
      const std::string outcome = Outcome(faulty);
      operations = std::max(operations, faulty.Count());
      SCOPED_TRACE(faulty.HasFailed() ? faulty.Calls()[n - 1] : "");
      SCOPED_TRACE(outcome);
      if (outcome == "True" && Replacer().LeftOut().empty()) {
        EXPECT_EQ(Read("src/A.pas").find("TQuery"), std::string::npos);
        EXPECT_EQ(Read("src/Sub/B.dfm").find("TQuery"), std::string::npos);
      }
      const TFiles after = Sources();
      if (FindUndoState(BackupDir()) != TUndoState::None) {
        // A second attempt is refused and changes nothing.
        EXPECT_THROW((void)Replacer().Replace(), EBackupsExist);
        EXPECT_EQ(Sources(), after);
      }
      TakeBack();
      EXPECT_EQ(Sources(), before);
      EXPECT_NE(FindUndoState(BackupDir()), TUndoState::Journal);
      Reset(before);
    }
    EXPECT_GT(operations, 60U);
  }
}

// An editor saves a file before each operation of a run. If it keeps size and time of the file, only the
// contents tell, which are compared while the time is recent.
TEST_F(StrictRunTest, AnEditIsNeverLost) {
  const TFiles before = Sources();
  const std::string unit = FTree.HostPath("src/A.pas");
  for (const bool keepsStamp : {false, true}) {
    std::string edited = kUnit;
    edited.replace(5, 1, keepsStamp ? "X" : "Edited");
    size_t operations = 1;
    int stopped = 0, replacedAround = 0;
    for (size_t n = 1; n <= operations; ++n) {
      SCOPED_TRACE(testing::Message() << n << " " << keepsStamp);
      Reset(before);
      const auto time = fs::file_time_type::clock::now() + std::chrono::hours(1);
      fs::last_write_time(unit, time);
      tests::TRecordingFileSystem files(win::FileSystem());
      bool isFlushed = false, isEdited = false;
      files.OnCall = [&](const std::string& call) {
        // Nothing tells an edit between the last comparison and the replacement.
        const bool cannotTell = keepsStamp && (call.starts_with("Read") || call.starts_with("CopyOver"));
        if (files.Count() == n && !cannotTell) {
          isEdited = true;
          FTree.Write("src/A.pas", edited);
          if (keepsStamp) fs::last_write_time(unit, time);
        }
        isFlushed = isFlushed || (call == "Flush" && files.Count() < n);
        return win::ERROR_SUCCESS;
      };
      const std::string outcome = Outcome(files);
      operations = std::max(operations, files.Count());
      SCOPED_TRACE(outcome);
      if (outcome != "True" && outcome != "False") {
        ++stopped;
        EXPECT_EQ(Read("src/A.pas"), edited);
        EXPECT_EQ(Read("src/Sub/B.dfm"), kForm);
      } else if (outcome == "False") {
        ++replacedAround;
        EXPECT_TRUE(isFlushed);  // all files are compared after the flush
        EXPECT_EQ(Read("src/A.pas"), edited);
        EXPECT_EQ(
            ShownWarnings(),
            "\"<dir>\\src\\A.pas\" could not be replaced. It was changed during the run.\n"
            "\"<dir>\\src\\Sub\\B.pas\" was not replaced, because another file or folder before it failed.\n"
            "\"<dir>\\src\\Sub\\B.DFM\" was not replaced, because another file or folder before it "
            "failed.\n");
      } else if (isEdited && Read("src/A.pas") != edited) {
        TakeBack();
        EXPECT_EQ(Read("src/A.pas"), edited);
      }
    }
    EXPECT_GT(stopped, 10);
    EXPECT_GT(replacedAround, 0);
  }
}

TEST_F(StrictRunTest, WhatIsRefused) {
  bool isPrepared = true;
  const struct {
    const char* Name;
    std::function<void()> Prepare;
    const char* Message;
  } rows[] = {
      {"a backup that cannot be made", [this] { FTree.MakeFolder("src/RBackup/A.~pas"); },
       "No backup of \"<dir>\\src\\A.pas\" could be made. Access is denied. No file was replaced."},
      {"a backup that is a link",
       [&] { FTree.MakeFolder("src/RBackup"), isPrepared = FTree.Link("/nowhere", "src/RBackup/A.~pas"); },
       "No backup of \"<dir>\\src\\A.pas\" could be made. Access is denied. No file was replaced."},
      {"an undo file that cannot be looked at", [this] { FTree.MakeFolder("src/RBackup/RExpert.reu"); },
       "Cannot open file \"<dir>\\src\\RBackup\\RExpert.reu\". Access is denied."},
      {"an earlier run", [this] { FTree.Write("src/RBackup/RExpert.reu", "a=b\r\n"); },
       "The backup folder \"<dir>\\src\\RBackup\" holds the undo file of an earlier run, which this run "
       "would overwrite."},
      {"an interrupted run", [this] { FTree.Write("src/RBackup/RExpert.reu.journal", "a=b\r\n"); },
       "A run was interrupted while it replaced files; their backups are in \"<dir>\\src\\RBackup\". Restore "
       "them before the next run."},
      {"a name that the undo file cannot list", [this] { FTree.Write("src/a=b.pas", kUnit); },
       "<dir>\\src\\a=b.pas: The undo file cannot list a name with \"=\" or a line end in it."},
      {"a damaged form", [this] { FTree.Write("src/A.dfm", kBadForm); },
       "<dir>\\src\\A.DFM: Form data at offset 2: the signature TPF0 is missing."},
      {"a log that is a link", [&] { isPrepared = FTree.Link("/nowhere", "src/Wiz_Log.txt"); },
       "Cannot create file \"<dir>\\src\\Wiz_Log.txt\". Access is denied."},
  };
  const TFiles before = Sources();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Name);
    isPrepared = true;
    row.Prepare();
    if (!isPrepared) continue;  // there are no links
    const TFiles prepared = Sources();
    EXPECT_EQ(Failure<rtl::Exception>(), row.Message);
    EXPECT_EQ(Sources(), prepared);
    EXPECT_TRUE(TempFolderIsEmpty());
    Reset(before);
  }
}

// The completion of a unit looks at its form, and the forms of a project refer to its databases. The form is
// read once more for its own conversion.
TEST_F(StrictRunTest, AFormThatChangesAfterOthersDependOnItStopsTheRun) {
  for (const bool isProject : {false, true}) {
    SCOPED_TRACE(isProject);
    FMigration.Complete({.Transactions = !isProject});
    if (isProject) {
      FMigration.Options().Dest = sdProject;
      FMigration.Options().UnitNames = FTree.WindowsPath("src/A.pas") + "\r\n";
    }
    FTree.Write("src/A.pas", "unit A; type TA = class(TForm) D: TDatabase; end; {$R *.dfm}");
    FTree.Write("src/A.dfm", "object A: TA\r\n  object D: TDatabase\r\n  end\r\nend\r\n");
    const auto time = fs::last_write_time(FTree.HostPath("src/A.dfm"));
    tests::TRecordingFileSystem files(win::FileSystem());
    int opened = 0;
    files.OnCall = [&](const std::string& call) {
      if (Shown(call) != "Open <dir>\\src\\A.DFM" || ++opened < 2) return win::ERROR_SUCCESS;
      FTree.Write("src/A.dfm", "object A: TA\r\n  object E: TDatabase\r\n  end\r\nend\r\n");
      fs::last_write_time(FTree.HostPath("src/A.dfm"), time);
      return win::ERROR_SUCCESS;
    };
    EXPECT_EQ(Outcome(files), "\"<dir>\\src\\A.DFM\" was changed during the run. No file was replaced.");
    EXPECT_NE(Read("src/A.pas").find("D: TDatabase"), std::string::npos);
  }
}

// Files that cannot be read are left out, with the actual reason, and the rest is converted.
TEST_F(StrictRunTest, WhatIsLeftOut) {
  const struct {
    const char *Call, *Message, *Converted;
  } rows[] = {
      {"Open <dir>\\src\\A.pas", "Cannot open file \"<dir>\\src\\A.pas\". Access is denied.",
       "src/Sub/B.pas"},
      {"Read <dir>\\src\\A.pas", "Cannot read file \"<dir>\\src\\A.pas\". Access is denied.",
       "src/Sub/B.dfm"},
      {"Open <dir>\\src\\A.DFM", "Cannot open file \"<dir>\\src\\A.DFM\". Access is denied.", "src/A.pas"},
      {"Attributes <dir>\\src\\A.DFM", "Cannot open file \"<dir>\\src\\A.DFM\". Access is denied.",
       "src/A.pas"},
      {"FindFirst <dir>\\src\\Sub\\*.*",
       "The folder \"<dir>\\src\\Sub\" could not be read. Access is denied.", "src/A.dfm"},
  };
  const TFiles before = Sources();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Call);
    tests::TRecordingFileSystem files(win::FileSystem());
    files.OnCall = [&](const std::string& call) {
      return Shown(call) == row.Call ? win::ERROR_ACCESS_DENIED : win::ERROR_SUCCESS;
    };
    EXPECT_EQ(Outcome(files), "True");
    ASSERT_EQ(Replacer().LeftOut().size(), 1U);
    EXPECT_EQ(Shown(Replacer().LeftOut()[0].Message), row.Message);
    EXPECT_EQ(ShownWarnings(), std::string(row.Message) + "\n");
    EXPECT_NE(Read(row.Converted), before.at(row.Converted));
    Reset(before);
  }
}

// The name of the connection is longer than a binary form can hold.
TEST_F(StrictRunTest, AFormThatCannotBeWrittenStopsTheRun) {
  const std::string name(300, 'x');
  FTree.Write("src/App.dpr", "program App;\r\nuses\r\n  A in 'A.pas',\r\n  B in 'Sub\\B.pas';\r\nend.\r\n");
  FTree.Write("src/A.dfm", "object " + name +
                               ": TDataModule\r\n  object D: TDatabase\r\n    DatabaseName = 'X'\r\n"
                               "  end\r\nend\r\n");
  FTree.Write("src/Sub/B.dfm", tests::FromHex("FF 0A 00 'B' 00 30 10 00 00 00 00 'TPF0' 05 'TForm' 01 'B' 00 "
                                              "06 'TQuery' 01 'Q' 0C 'DatabaseName' 06 01 'X' 00 00 00"));
  host::THost host;
  mig::TReplaceOptions& options = FMigration.Options();
  options.Dest = sdProject;
  for (const std::string& unit :
       host::SelectUnits(host::OpenProjectForRun(host, FTree.HostPath("src/App.dpr")), {}))
    options.UnitNames += unit + "\r\n";
  const TFiles before = Sources();
  EXPECT_EQ(Failure<rtl::Exception>(),
            "<dir>\\src\\Sub\\B.DFM: Form text, line 3: a value is longer than 255 bytes (object B.Q, "
            "property Connection).");
  EXPECT_EQ(Sources(), before);
}

TEST_F(StrictRunTest, KeepGoingLeavesDamagedFilesAsTheyAre) {
  Policy().KeepGoing = true;
  FTree.Write("src/A.dfm", kBadForm);
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(ShownWarnings(), "<dir>\\src\\A.DFM: Form data at offset 2: the signature TPF0 is missing.\n");
  EXPECT_EQ(Replacer().LeftOut().size(), 1U);
  EXPECT_EQ(Read("src/A.dfm"), kBadForm);
  EXPECT_NE(Read("src/Sub/B.dfm"), kForm);
  // The results of a run are cleared by the next.
  Policy().OverwriteBackups = true;
  FTree.Write("src/A.dfm", kForm);
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_TRUE(Replacer().LeftOut().empty());
}

TEST_F(StrictRunTest, AUnitThatWasConvertedBefore) {
  EXPECT_TRUE(Replacer().Replace());
  const std::string once = Read("src/A.pas");
  Policy().OverwriteBackups = true;
  Policy().SkipConverted = true;
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(Read("src/A.pas"), once);
  EXPECT_EQ(
      ShownWarnings(),
      "\"<dir>\\src\\A.pas\" already names the new units. Was it converted before? It was left as it is.\n"
      "\"<dir>\\src\\Sub\\B.pas\" already names the new units. Was it converted before? It was left as it "
      "is.\n");
  FWarnings.clear();
  Policy().SkipConverted = false;
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_NE(Read("src/A.pas"), once);
  EXPECT_EQ(FWarnings.size(), 2U);
}

// Backups that a run overwrites stay unchanged until its own backups are complete.
TEST_F(StrictRunTest, OverwritingBackupsMayFailAtAnyMoment) {
  const TFiles first = Sources();
  const TFiles second = {{"src/A.pas", "{ TQuery: second }"}, {"src/Sub/B.pas", "{ TTable: second }"}};
  Policy().OverwriteBackups = true;
  size_t operations = 0;
  for (size_t n = 0; n <= operations; ++n) {
    SCOPED_TRACE(n);
    Reset(first);
    EXPECT_TRUE(Replacer().Replace());
    TFiles converted = Sources();
    for (const auto& [name, text] : second) FTree.Write(name, converted[name] = text);
    tests::TRecordingFileSystem faulty(win::FileSystem());
    if (n > 0) faulty.FailFrom(n, win::ERROR_DISK_FULL);
    SCOPED_TRACE(Outcome(faulty));
    operations = std::max(operations, faulty.Count());
    if (Sources() == converted) {  // the second run replaced nothing, so the first can still be restored
      if (FindUndoState(BackupDir()) == TUndoState::Journal) TakeBack();
      EXPECT_EQ(Sources(), converted);
      TakeBack();
      EXPECT_EQ(Sources(), first);
    } else {
      TakeBack();
      EXPECT_EQ(Sources(), converted);
    }
  }
  EXPECT_TRUE(fs::exists(FTree.HostPath("src")));
}

TEST_F(StrictRunTest, ChoosesTheFirstFreeBackupFolder) {
  const std::string base = FMigration.Options().Directory;
  const char* const makes[] = {"src/RBackup/RExpert.reu", "src/RBackup.2/RExpert.reu.journal"};
  EXPECT_EQ(ChooseBackupDir(base), JoinPath(base, "RBackup"));
  FTree.Write("src/RBackup/RExpert.reu", "");  // of a run that changed nothing
  EXPECT_EQ(ChooseBackupDir(base), JoinPath(base, "RBackup"));
  for (const char* name : makes) FTree.Write(name, "a=b\r\n");
  EXPECT_EQ(ChooseBackupDir(base), JoinPath(base, "RBackup.3"));
}

// The backup folder as the user may type it in the wizard. The folder of the run must not be locked twice.
TEST_F(StrictRunTest, BackupsInTheFolderOfTheRun) {
  const TFiles before = Sources();
  for (const char* backupDir :
       {"src", "src\\", "SRC\\.", "src\\Sub\\..", ".\\other\\..\\src", "src\\Sub\\.\\", "src. "}) {
    SCOPED_TRACE(backupDir);
    FMigration.Options().BackupDir = JoinPath(FTree.WindowsPath(), backupDir);
    EXPECT_TRUE(Replacer().Replace());
    TRestorePlan plan;
    plan.Add(UndoFile());
    plan.Check();
    for (const TRestoreLine& line : plan.Lines()) EXPECT_EQ(line.Verdict, TRestoreVerdict::Restorable);
    EXPECT_TRUE(Replacer().Restore(plan));
    EXPECT_EQ(Sources(), before);
    Reset(before);
  }
}

TEST_F(StrictRunTest, FoldersOfStoppedRunsAreNamedAndKept) {
  FTree.Write("tmp/$DS1/A.pas", "x");
  FTree.Write("tmp/$DS2", "a file");
  FTree.MakeFolder("tmp/$DS3");
  fs::last_write_time(FTree.HostPath("tmp/$DS1/A.pas"),
                      fs::file_time_type::clock::now() - std::chrono::hours(75));
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(ShownWarnings(),
            "Temporary folders of runs that were stopped, which you may delete: \"<dir>\\tmp\\$DS1\" (3 days "
            "old), \"<dir>\\tmp\\$DS3\" (empty).\n");
  EXPECT_EQ(FTree.Names("tmp"), (std::vector<std::string>{"$DS1", "$DS2", "$DS3"}));
  EXPECT_EQ(FTree.Names("tmp/$DS1"), std::vector<std::string>{"A.pas"});
}

// A copy that reports success although it differs from the source.
TEST_F(StrictRunTest, AnUntrueBackupStopsTheRun) {
  const TFiles before = Sources();
  tests::TRecordingFileSystem files(win::FileSystem());
  std::string made;
  files.OnCall = [&](const std::string& call) {
    if (call.starts_with("CopyToOwn") && call.ends_with("A.~pas")) made = "src/RBackup/A.~pas";
    if (!made.empty() && call.starts_with("Stamp")) FTree.Write(made, std::string(sizeof kUnit - 1, ' '));
    return win::ERROR_SUCCESS;
  };
  EXPECT_EQ(Outcome(files),
            "No backup of \"<dir>\\src\\A.pas\" could be made. The copy differs from what was read. No file "
            "was replaced.");
  EXPECT_EQ(Sources(), before);
}

}  // namespace
}  // namespace mig
