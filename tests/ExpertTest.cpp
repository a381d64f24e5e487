#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

#include "RecordingHost.h"
#include "host/Host.h"
#include "target/Catalogue.h"
#include "target/KVAExpert.h"
#include "target/KVAWizard.h"
#include "tests/Scratch.h"

namespace {

using TLines = std::vector<std::string>;

constexpr char kUnit[] = "unit Main;\r\nQ: TQuery; I: TIBQuery;\r\nend.\r\n";
constexpr char kWizard[] = "Form KVAWizardForm";
constexpr char kQuestion[] = "Form SaveWarnForm";

// The expert in a host with the project C:\App\App.dpr: the unit Main, which has a form, the unit Data, and
// the form unit Other of another project.
class ExpertTest : public testing::Test {
 protected:
  ExpertTest() {
    FScratch.Write("App/Main.pas", kUnit);
    FScratch.Write("App/Data.pas", "unit Data;\r\nend.\r\n");
    FScratch.Write("Src/Main.pas", kUnit);
    FScratch.Write("App/RBackup/Empty.reu", "");
    FHost.ProjectFile = "C:\\App\\App.dpr";
    FHost.Modules = {{"C:\\App\\Main.pas", true}, {"C:\\App\\Data.pas"}, {"C:\\B\\Other.txt", true, false}};
    rtl::TMenuItem& help = FHost.MainMenu.NewItem();
    help.SetName("HelpMenu");
    FHost.MainMenu.Items().Insert(0, help);
  }

  // Uses the wizard once: plays `steps` on its form, then `answer` on the question. Returns the events that
  // the user and the host see, in order.
  TLines Use(std::string_view steps, std::string_view answer = {}) {
    FHost.Calls.clear();
    if (!FExpert) FExpert = target::MakeExpert(FMigration);
    FFrontEnd.Script = {[steps](rtl::TForm& form) { test::Play(form, steps); }};
    if (!answer.empty()) FFrontEnd.Script.push_back([answer](rtl::TForm& form) { test::Play(form, answer); });
    FHost.MainMenu.FindItem("RExpertItemBDE_IBXKORVA")->Click();
    EXPECT_TRUE(FFrontEnd.Script.empty()) << "a form that was expected did not come";
    EXPECT_EQ(mig::WizardForm, nullptr);
    return FHost.Calls;
  }
  bool IsStored() const { return FScratch.Exists(tests::TScratch::kSettings); }
  std::string Unit(const char* folder) const { return FScratch.Read(std::string(folder) + "/Main.pas"); }

  tests::TScratch FScratch;
  test::THostState FHost;
  test::TScriptedFrontEnd FFrontEnd{FHost.Calls};
  target::TKVAMigration FMigration{target::TCatalogue::BuiltIn()};
  test::THostInForce FHostInForce{FHost};
  toolsapi::TIntf<mig::TCompReplaceExpert> FExpert;
};

constexpr char kProject[] = "btNext; btNext; btNext; btNext; btFinish";
constexpr char kFolder[] = "btNext; rbDestFolder; btNext; cbDirectory=C:\\Src; btNext; btNext; btFinish";
constexpr char kRestore[] =
    "rbModeRestore; btNext; edUndoFile=C:\\App\\RBackup\\RExpert.reu; btNext; btFinish";
constexpr char kRestoreEmpty[] =
    "rbModeRestore; btNext; edUndoFile=C:\\App\\RBackup\\Empty.reu; btNext; btFinish";
constexpr char kReplaced[] = "Box 64 BDE/IBX Migration Wizard: Replace procedure was performed sucessfully.";

TEST_F(ExpertTest, ReplaceInTheProject) {
  EXPECT_EQ(Use(kProject, "OKBtn"),
            (TLines{kWizard, kQuestion, "Save 0 1", "Show C:\\App\\Main.pas", "Reload C:\\App\\Main.pas",
                    "Reload C:\\App\\Data.pas", kReplaced}));
  EXPECT_EQ(Unit("App"), "unit Main;\r\nQ: TKVAQuery; I: TIBQuery;\r\nend.\r\n");
  EXPECT_TRUE(IsStored());
  // A unit that was not selected is read from disk again, too.
  std::filesystem::remove(FScratch.HostPath("App/RBackup/RExpert.reu"));
  const TLines calls = Use("rbModeReplace; btNext; btNext; lbModules[0]; btNext; btNext; btFinish", "OKBtn");
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "Reload C:\\App\\Main.pas"), 1);
}

TEST_F(ExpertTest, TheModeChoosesTheReplacer) {
  Use(std::string("rbModeReplaceIBX; ") + kProject, "OKBtn");
  EXPECT_EQ(Unit("App"), "unit Main;\r\nQ: TQuery; I: TKVAQuery;\r\nend.\r\n");
}

TEST_F(ExpertTest, CancelDoesNothing) {
  EXPECT_EQ(Use("btNext; btCancel"), TLines{kWizard});
  EXPECT_FALSE(IsStored());
}

TEST_F(ExpertTest, NoEndsTheOperationAndStoresTheSettings) {
  EXPECT_EQ(Use(kProject, "CancelBtn"), (TLines{kWizard, kQuestion}));
  EXPECT_EQ(Unit("App"), kUnit);
  EXPECT_TRUE(IsStored());
}

TEST_F(ExpertTest, ASilencedQuestionDoesNotCome) {
  FScratch.Write(tests::TScratch::kSettings, "[BDE/IBX Migration Wizard]\nReplaceProjWarn=0\n");
  EXPECT_EQ(Use(kProject)[1], "Save 0 1");
}

TEST_F(ExpertTest, AProjectThatCannotBeSaved) {
  FHost.SaveResult = false;
  EXPECT_EQ(
      Use(kProject, "OKBtn"),
      (TLines{kWizard, kQuestion, "Save 0 1",
              "Box 64 BDE/IBX Migration Wizard: Cannot start replace process.\nProject was not saved."}));
  EXPECT_EQ(Unit("App"), kUnit);
  EXPECT_TRUE(IsStored());
}

TEST_F(ExpertTest, AFolderDoesNotConcernTheHost) {
  EXPECT_EQ(Use(kFolder), (TLines{kWizard, kReplaced}));
  EXPECT_EQ(Unit("Src"), "unit Main;\r\nQ: TKVAQuery; I: TIBQuery;\r\nend.\r\n");
  EXPECT_EQ(Unit("App"), kUnit);
}

TEST_F(ExpertTest, AReplaceThatFailsReloadsNothing) {
  std::filesystem::permissions(FScratch.HostPath("App/Main.pas"), std::filesystem::perms::owner_read);
  FScratch.Write("App/Data.pas", kUnit);
  EXPECT_EQ(Use(kProject, "OKBtn"), (TLines{kWizard, kQuestion, "Save 0 1", "Show C:\\App\\Main.pas",
                                            "Box 16 BDE/IBX Migration Wizard: Replace failed."}));
  EXPECT_NE(FScratch.Read("App/Data.pas"), kUnit)
      << "a file that fails does not keep others from being replaced";
  EXPECT_TRUE(IsStored());
}

TEST_F(ExpertTest, AnExceptionGoesToTheHostAndStoresNothing) {
  FScratch.Write("App/Data.pas", "\xFF\xFEodd");
  EXPECT_THROW(Use(kProject, "OKBtn"), rtl::Exception);
  EXPECT_EQ(FHost.Calls, (TLines{kWizard, kQuestion, "Save 0 1", "Show C:\\App\\Main.pas"}));
  EXPECT_EQ(mig::WizardForm, nullptr);
  EXPECT_FALSE(IsStored() && FScratch.Read(tests::TScratch::kSettings).find("Dest") != std::string::npos);
}

// A front end that can ask tells why a run ended, and that nothing was changed.
TEST_F(ExpertTest, ARunThatEndsIsTold) {
  std::filesystem::create_directory(FScratch.HostPath("tmp"));
  // Folders that other runs have left would be told.
  const tests::TVariable temporary(tests::kTemporaryVariable, FScratch.HostPath("tmp"));
  const std::string damaged =
      "Ask: C:\\App\\Data.pas: UTF-16 text with an odd number of bytes.\n"
      "No file was changed.\n"
      "The run can go on without this file and others that cannot be converted. They are left as they are, "
      "and everything else is converted, the unit of a damaged form too.";
  struct TRow {
    std::function<void()> Prepare;
    std::deque<std::string> Answers;
    std::string Shown;
  };
  const TRow rows[] = {
      {[this] { FScratch.Write("App/Data.pas", "\xFF\xFEodd"); }, {"Cancel"}, damaged},
      {[this] {
         FMigration.BDE().OnProgress = [](const mig::TRunProgress&) { throw rtl::EAbort("by the user"); };
       },
       {"Close"},
       "Ask: The run was stopped.\nNo file was changed."},
      {[this] {
         FMigration.BDE().OnProgress = nullptr;
         std::filesystem::remove_all(FScratch.HostPath("App/RBackup"));
         FScratch.Write("App/RBackup", "a file");
       },
       {"Close"},
       "Ask: Replace failed.\nFailed to create directory.\nNo file was changed.\n"
       "The backup folder \"C:\\App\\RBackup\" cannot be made. Cannot create a file when that file already "
       "exists."},
  };
  for (const TRow& row : rows) {
    row.Prepare();
    FFrontEnd.Answers = row.Answers;
    EXPECT_THROW(Use(kProject, "OKBtn"), rtl::EAbort) << row.Shown;
    EXPECT_EQ(FHost.Calls.back(), row.Shown);
    EXPECT_EQ(Unit("App"), kUnit);
  }
}

TEST_F(ExpertTest, AUnitThatCannotBeReadIsLeftOut) {
  std::filesystem::remove(FScratch.HostPath("App/Data.pas"));
  const TLines calls = Use(kProject, "OKBtn");
  EXPECT_EQ(calls.back(),
            "Box 64 BDE/IBX Migration Wizard: These were left as they are:\n"
            "Cannot open file \"C:\\App\\Data.pas\". The system cannot find the file specified.");
  EXPECT_NE(Unit("App"), kUnit);
}

TEST_F(ExpertTest, ADamagedUnitCanBeLeftOut) {
  std::filesystem::create_directory(FScratch.HostPath("tmp"));
  const tests::TVariable temporary(tests::kTemporaryVariable, FScratch.HostPath("tmp"));
  const std::string damaged = "\xFF\xFEodd";
  FScratch.Write("App/Data.pas", damaged);
  FFrontEnd.Answers = {"Leave Out and Go On", "Close"};
  EXPECT_EQ(Use(kProject, "OKBtn").back(),
            "Ask: Replace procedure was performed sucessfully.\nOne file or folder was left as it is.\n"
            "Files: 1 read, 1 changed\nLeft: no-new-units 1\nBackups: C:\\App\\RBackup\n"
            "Way back: C:\\App\\RBackup\\RExpert.reu\n"
            "C:\\App\\Data.pas: UTF-16 text with an odd number of bytes.");
  EXPECT_EQ(FScratch.Read("App/Data.pas"), damaged);
  EXPECT_NE(Unit("App"), kUnit);
}

// The backups of an earlier run are not overwritten unless the user agrees.
TEST_F(ExpertTest, ABackupFolderOfAnEarlierRun) {
  const std::string refused =
      "Box 16 BDE/IBX Migration Wizard: The backup folder \"C:\\App\\RBackup\" holds the undo file of an "
      "earlier run, which this run would overwrite.";
  constexpr char kAgain[] = "rbModeReplace; btNext; btNext; btNext; btNext; btFinish";
  FScratch.Write("App/RBackup/RExpert.reu", "a=b\r\n");
  EXPECT_EQ(Use(kProject), (TLines{kWizard, refused}));
  EXPECT_EQ(Unit("App"), kUnit);

  const std::string question =
      "Ask: The backup folder \"C:\\App\\RBackup\" holds the undo file of an earlier run, which this run "
      "would overwrite.\n"
      "New Folder: the backups of this run go to \"C:\\App\\RBackup.2\". Both runs can be undone, this one "
      "first.\n"
      "Overwrite: the earlier run can no longer be undone after this run has ended.";
  FFrontEnd.Answers = {"Cancel"};
  EXPECT_EQ(Use(kAgain), (TLines{kWizard, question}));
  FFrontEnd.Answers = {"New Folder"};
  EXPECT_EQ(Use(kAgain, "OKBtn").back(), kReplaced);
  EXPECT_EQ(FScratch.Read("App/RBackup.2/Main.~pas"), kUnit);
  EXPECT_EQ(FScratch.Read("App/RBackup/RExpert.reu"), "a=b\r\n");
  EXPECT_NE(FScratch.Read(tests::TScratch::kSettings).find("LastUndo=C:\\\\App\\\\RBackup.2\\\\RExpert.reu"),
            std::string::npos);
  FScratch.Write("App/Main.pas", kUnit);
  FFrontEnd.Answers = {"Overwrite"};
  EXPECT_EQ(Use(kAgain, "OKBtn").back(), kReplaced);
  EXPECT_EQ(FScratch.Read("App/RBackup/RExpert.reu"), "C:\\App\\Main.pas=C:\\App\\RBackup\\Main.~pas\r\n");

  FScratch.Write("App/RBackup/RExpert.reu.journal", "a=b\r\n");
  EXPECT_EQ(Use(kAgain),
            (TLines{kWizard,
                    "Box 16 BDE/IBX Migration Wizard: A run was interrupted while it replaced files; their "
                    "backups are in \"C:\\App\\RBackup\". Restore them before the next run."}));
}

TEST_F(ExpertTest, Restore) {
  Use(kProject, "OKBtn");
  const TLines restored = {kWizard, kQuestion, "Close",
                           "Box 64 BDE/IBX Migration Wizard: Files were succefully restored.",
                           "Open new C:\\App\\App.dpr"};
  EXPECT_EQ(Use(kRestore, "OKBtn"), restored);
  EXPECT_EQ(Unit("App"), kUnit);
  FHost.CloseResult = false;
  EXPECT_EQ(Use(kRestore, "OKBtn"), restored) << "nobody looks whether the host has closed";
  EXPECT_EQ(Use(kRestore, "CancelBtn"), (TLines{kWizard, kQuestion}));
}

// Files that were edited since the run are not overwritten unless the user agrees.
TEST_F(ExpertTest, ARestoreOverEditedFiles) {
  FScratch.Write("App/Data.pas", kUnit);
  Use(kProject, "OKBtn");
  const std::string converted = Unit("App");
  const auto later = std::filesystem::file_time_type::clock::now() + std::chrono::hours(1);
  const auto edit = [&] {
    FScratch.Write("App/Main.pas", "mine");
    std::filesystem::last_write_time(FScratch.HostPath("App/Main.pas"), later);
    FScratch.Write("App/Data.pas", converted);
    std::filesystem::last_write_time(FScratch.HostPath("App/Data.pas"), later - std::chrono::hours(2));
  };
  const std::string question =
      "Ask: 1 of 2 files is not as the run left it.\n"
      "Nothing was restored yet. A restore overwrites these files too, and there is no copy of what they "
      "hold now.\n"
      "This file was edited after the run: C:\\App\\Main.pas";
  struct TRow {
    std::deque<std::string> Answers;
    std::string Main, Data;
    TLines Calls;
  };
  const TRow rows[] = {
      {{},
       "mine",
       converted,
       {kWizard, kQuestion,
        "Box 16 BDE/IBX Migration Wizard: Nothing was restored.\n"
        "This file was edited after the run: C:\\App\\Main.pas"}},
      {{"Cancel"}, "mine", converted, {kWizard, kQuestion, question}},
      {{"Restore the Rest", "Close"},
       "mine",
       kUnit,
       {kWizard, kQuestion, question, "Close",
        "Ask: Files were succefully restored.\nOne file or folder was left as it is.\nFiles: 1 restored\n"
        "This file was edited after the run: C:\\App\\Main.pas",
        "Open new C:\\App\\App.dpr"}},
      {{"Restore All", "Close"},
       kUnit,
       kUnit,
       {kWizard, kQuestion, question, "Close", "Ask: Files were succefully restored.\nFiles: 2 restored",
        "Open new C:\\App\\App.dpr"}},
  };
  for (const TRow& row : rows) {
    edit();
    FFrontEnd.Answers = row.Answers;
    EXPECT_EQ(Use(kRestore, "OKBtn"), row.Calls);
    EXPECT_EQ(Unit("App"), row.Main);
    EXPECT_EQ(FScratch.Read("App/Data.pas"), row.Data);
  }
}

TEST_F(ExpertTest, ARestoreThatFailsReopensTheProjectToo) {
  const char kFailed[] = "Box 16 BDE/IBX Migration Wizard: Failed to restore files.";
  EXPECT_EQ(Use(kRestoreEmpty, "OKBtn"),
            (TLines{kWizard, kQuestion, "Close", kFailed, "Open new C:\\App\\App.dpr"}));
  FHost.ProjectFile.clear();
  EXPECT_EQ(Use(kRestoreEmpty, "OKBtn"), (TLines{kWizard, kQuestion, kFailed, "Open new "})) << "no project";
}

TEST_F(ExpertTest, TheSettingsOfOneUseAreTheStartOfTheNext) {
  Use(kFolder);
  Use("btNext; btCancel");
  FFrontEnd.Script = {[](rtl::TForm& form) {
    auto& wizard = dynamic_cast<target::TKVAWizardForm&>(form);
    EXPECT_TRUE(wizard.rbModeReplace.Checked() && wizard.rbDestFolder.Checked());
    EXPECT_EQ(wizard.cbDirectory.Text(), "C:\\Src");
    EXPECT_EQ(wizard.cbBackupDir.Items().Text(), "C:\\Src\\RBackup\r\n");
    EXPECT_EQ(wizard.edUndoFile.Text(), "C:\\Src\\RBackup\\RExpert.reu");
    EXPECT_EQ(form.Caption(), "KORVA Migration Wizard - Step 1 of 5");
    EXPECT_EQ(wizard.rbModeReplace.Text(), "&Replace BDE components") << "the form's own text comes last";
    EXPECT_EQ(wizard.Label2.Text(),
              "Wizard facilitates converting your application to KORVA. It replaces all standard BDE/IBX "
              "components to corresponding KORVA components. You may need to make some changes manually to "
              "compile your application successfully.");
    form.Close();
  }};
  FExpert->ShowWizard();
}

TEST_F(ExpertTest, NamesThatTheHostSees) {
  rtl::TMenuItem* item = nullptr;
  {
    const toolsapi::TIntf<toolsapi::IOTAWizard> wizard = target::MakeExpert(FMigration);
    EXPECT_EQ(wizard->GetIDString(), "Tarvex.BDE/IBXMigrationWizard.KORVA");
    EXPECT_EQ(wizard->GetName(), "BDE/IBX Migration Wizard");
    EXPECT_EQ(wizard->GetState(), 0);
    wizard->Execute();
    EXPECT_TRUE(FHost.Calls.empty());
    item = FHost.MainMenu.FindItem("RExpertItemBDE_IBXKORVA");
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->Caption(), "&Migration Wizard");
  }
  item->Click();
  EXPECT_TRUE(FHost.Calls.empty()) << "without the expert the item does nothing";
}

// --- The loadable module ---

TEST(ExpertModuleTest, RegistersTheExpertWithTheHost) {
  host::THost host;
  host.LoadWizardModule(win::ToWindowsPath(KVA_EXPERT_MODULE));
  EXPECT_NE(host.MainMenu().FindItem("RExpertItemBDE_IBXKORVA"), nullptr);
}

}  // namespace
