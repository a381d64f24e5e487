#include <gtest/gtest.h>

#include "MigWizard/wizard/Wizard.h"
#include "RecordingHost.h"
#include "target/KVAWizard.h"
#include "tests/Scratch.h"

namespace {

using TLines = std::vector<std::string>;

const std::string kToSrc = "btNext; rbDestFolder; btNext; cbDirectory=C:\\Src; btNext";

// The wizard over a host, with C:\App\App.dpr, C:\App\Undo.reu and the folder C:\Src on disk.
class WizardTest : public testing::Test {
 protected:
  WizardTest() {
    FScratch.Write("App/App.dpr", "");
    FScratch.Write("App/Undo.reu", "");
    FScratch.Write("Src/A.pas", "");
    FScratch.Write("Src2/A.pas", "");
  }

  void OpenProject() {
    FHost.ProjectFile = "C:\\App\\App.dpr";
    FHost.Modules = {
        {"C:\\App\\Main.pas"}, {""}, {"C:\\App\\App.dpr"}, {"C:\\Lib\\DATA.PAS"}, {"C:\\App\\x.inc"}};
  }

  // Shows a new form, performs the steps on it, and then calls `look`.
  int Show(std::string_view steps, const std::function<void(target::TKVAWizardForm&)>& look = {}) {
    const test::THostInForce host(FHost);
    target::TKVAWizardForm form;
    form.FProductName = "KORVA";
    form.FOptions = &FOptions;
    FFrontEnd.Script.push_back([&](rtl::TForm&) {
      test::Play(form, steps);
      if (look) look(form);
      if (form.ModalResult() == rtl::mrNone) form.Close();
    });
    const int result = form.ShowModal();
    EXPECT_EQ(form.lbModules.Count(), 0) << "FormClose empties the list";
    return result;
  }

  // Returns "PAGE caption #replacer buttons": the page's name, the end of the caption, the replacer's
  // index, and which of Back, Next, Finish are enabled.
  static std::string State(const target::TKVAWizardForm& form) {
    std::string state = form.StepsPageControl.ActivePage().Name() +
                        form.Caption().substr(form.Caption().rfind("- ")) + " #" +
                        std::to_string(form.GetReplacerIndex());
    for (const auto* action : {&form.actBack, &form.actNext, &form.actFinish}) {
      if (action->Enabled()) state += " " + action->Name().substr(3);
    }
    return state;
  }

  tests::TScratch FScratch;
  test::THostState FHost;
  test::TScriptedFrontEnd FFrontEnd{FHost.Calls};
  mig::TReplaceOptions FOptions{"BDE/IBX"};
};

// One use, through all pages and back.
TEST_F(WizardTest, Walk) {
  struct TRow {
    const char *Steps, *State;
    std::string Message = {};
    const char* Focus = "";
  };
  const std::string box = "Box 64 BDE/IBX Migration Wizard: ";
  const TRow rows[] = {
      {"btPrev", "Step1Sheet- Step 1 of 5 #0 Next"},
      {"btFinish", "Step1Sheet- Step 1 of 5 #0 Next"},
      {"rbModeReplaceIBX", "Step1Sheet- Step 1 of 5 #1 Next"},
      {"rbModeRestore", "Step1Sheet- Step 1 of 3 #100 Next"},
      {"rbModeReplaceIBX", "Step1Sheet- Step 1 of 5 #1 Next"},
      {"btNext", "Step2ReplaceSheet- Step 2 of 5 #1 Back Next"},
      {"btPrev; rbModeRestore; rbModeReplace", "Step1Sheet- Step 1 of 5 #0 Next"},
      // Replace in the project.
      {"btNext; btNext", "Step3ProjSheet- Step 3 of 5 #0 Back Next"},
      {"btPrev", "Step2ReplaceSheet- Step 2 of 5 #0 Back Next"},
      {"btNext; btDeselect; btNext", "Step3ProjSheet- Step 3 of 5 #0 Back Next",
       "Information: At least one unit should be selected.", "lbModules"},
      {"lbModules[1]; btNext", "Step4Sheet- Step 4 of 5 #0 Back Next"},
      {"btPrev", "Step3ProjSheet- Step 3 of 5 #0 Back Next"},
      {"btNext; btNext", "FinalStepSheet- Step 5 of 5 #0 Back Finish"},
      {"btNext", "FinalStepSheet- Step 5 of 5 #0 Back Finish"},
      {"btPrev", "Step4Sheet- Step 4 of 5 #0 Back Next"},
      // Replace in a folder.
      {"btPrev; btPrev; rbDestFolder; btNext", "Step3DirSheet- Step 3 of 5 #0 Back"},
      {"cbDirectory=C:\\No; btNext", "Step3DirSheet- Step 3 of 5 #0 Back Next",
       box + "Target directory \"C:\\No\" does not exist.", "cbDirectory"},
      {"cbDirectory=C:\\Src; btNext", "Step4Sheet- Step 4 of 5 #0 Back Next"},
      {"btNext", "FinalStepSheet- Step 5 of 5 #0 Back Finish"},
      {"btPrev; btPrev", "Step3DirSheet- Step 3 of 5 #0 Back Next"},
      {"btPrev", "Step2ReplaceSheet- Step 2 of 5 #0 Back Next"},
      // Restore.
      {"btPrev; rbModeRestore; btNext", "Step2RestoreSheet- Step 2 of 3 #100 Back"},
      {"edUndoFile=C:\\No.reu; btNext", "Step2RestoreSheet- Step 2 of 3 #100 Back Next",
       box + "Undo file \"C:\\No.reu\" does not exist.", "edUndoFile"},
      {"edUndoFile=C:\\App; btNext", "Step2RestoreSheet- Step 2 of 3 #100 Back Next",
       box + "Undo file \"C:\\App\" does not exist.", "edUndoFile"},
      {"edUndoFile=C:\\App\\Undo.reu; btNext", "FinalStepSheet- Step 3 of 3 #100 Back Finish"},
      {"btPrev", "Step2RestoreSheet- Step 2 of 3 #100 Back Next"},
      {"btPrev", "Step1Sheet- Step 1 of 3 #100 Next"},
  };
  OpenProject();
  Show("", [&](auto& form) {
    for (const TRow& row : rows) {
      SCOPED_TRACE(testing::Message() << "row " << &row - rows << ": " << row.Steps);
      FFrontEnd.Shown.clear();
      FFrontEnd.Focused.clear();
      test::Play(form, row.Steps);
      EXPECT_EQ(State(form), row.State);
      EXPECT_EQ(FFrontEnd.Shown, row.Message.empty() ? TLines() : TLines{row.Message});
      EXPECT_EQ(FFrontEnd.Focused, row.Focus);
    }
  });
  // No project: the scope is a folder, and the project scope cannot be selected.
  FHost.ProjectFile.clear();
  Show("btNext; rbDestProject; btNext",
       [&](auto& form) { EXPECT_EQ(State(form), "Step3DirSheet- Step 3 of 5 #0 Back"); });
}

TEST_F(WizardTest, ShowTakesTheOptions) {
  FOptions.Dest = mig::sdFolder;
  FOptions.Directory = "C:\\Src";
  FOptions.IncludeSubDirs = true;
  FOptions.MakeBackup = false;
  FOptions.BackupDir = "C:\\Old";
  FOptions.WriteLog = false;
  FOptions.ViewLog = true;
  OpenProject();
  Show("", [](auto& form) {
    EXPECT_TRUE(form.rbDestFolder.Checked() && form.rbDestProject.Enabled());
    EXPECT_EQ(form.cbDirectory.Text(), "C:\\Src");
    EXPECT_TRUE(form.chSubDirs.Checked());
    EXPECT_FALSE(form.chMakeBackup.Checked() || form.chWriteLog.Checked());
    EXPECT_TRUE(form.chViewLog.Checked()) << "disabled, and marked as before";
    EXPECT_FALSE(form.chViewLog.Enabled() || form.lblLogNote.Enabled());
    EXPECT_FALSE(form.lBackupFolder.Enabled() || form.cbBackupDir.Enabled() ||
                 form.btBrowseBackFolder.Enabled());
    EXPECT_EQ(form.cbBackupDir.Text(), "");
    test::Play(form, "chMakeBackup; chWriteLog");
    EXPECT_TRUE(form.chViewLog.Enabled() && form.lblLogNote.Enabled());
    EXPECT_TRUE(form.lBackupFolder.Enabled() && form.cbBackupDir.Enabled() &&
                form.btBrowseBackFolder.Enabled());
  });
}

TEST_F(WizardTest, UnitListIsFilledOnceWithTheUnitsAlone) {
  OpenProject();
  Show("btNext; btNext", [](auto& form) {
    ASSERT_EQ(form.lbModules.Count(), 2);
    EXPECT_EQ(form.lbModules.Entry(0), "Main.pas");
    EXPECT_EQ(form.lbModules.Entry(1), "DATA.PAS");
    EXPECT_TRUE(form.lbModules.Checked(0) && form.lbModules.Checked(1));
    test::Play(form, "lbModules[0]; btPrev; btNext");
    EXPECT_FALSE(form.lbModules.Checked(0));
    EXPECT_EQ(form.lbModules.Count(), 2);
  });
  FHost.Modules = {{"C:\\App\\App.dpr"}};
  Show("btNext; btNext; btNext", [](auto& form) { EXPECT_EQ(form.ActivePage(), mig::Step3ProjSheet); });
  EXPECT_EQ(FFrontEnd.Shown.back(), "Information: At least one unit should be selected.");
}

TEST_F(WizardTest, BackupFolderFollowsUntilTheUserTouchesIt) {
  constexpr char kSrc2[] = "; btPrev; cbDirectory=C:\\Src2; btNext";
  const std::string rows[][3] = {
      // Steps, the option shown, the option used.
      {"btNext; btNext; btNext", "C:\\App\\RBackup", "C:\\App\\RBackup"},
      {kToSrc, "C:\\Src\\RBackup", "C:\\Src\\RBackup"},
      {kToSrc + kSrc2, "C:\\Src2\\RBackup", "C:\\Src2\\RBackup"},
      {kToSrc + "; cbBackupDir=Old" + kSrc2, "Old", "C:\\Src2\\Old"},
      {kToSrc + "; cbBackupDir=\\Old", "\\Old", "C:\\Src\\Old"},
      {kToSrc + "; cbBackupDir=D:\\B" + kSrc2, "D:\\B", "D:\\B"},
      {kToSrc + "; cbBackupDir=", "", "C:\\Src\\"},
      {kToSrc + "; btBrowseBackFolder" + kSrc2, "C:\\Picked", "C:\\Picked"},
  };
  FFrontEnd.Picked = "C:\\Picked";
  OpenProject();
  for (const auto& row : rows) {
    SCOPED_TRACE(row[0]);
    Show(row[0], [&](auto& form) {
      EXPECT_EQ(form.cbBackupDir.Text(), row[1]);
      EXPECT_EQ(form.GetBackupDir(), row[2]);
    });
  }
}

TEST_F(WizardTest, Pickers) {
  constexpr char kUndo[] = "rbModeRestore; btNext; edUndoFile=C:\\App\\Undo.reu; btRestoreBrowse";
  constexpr char kFolder[] = "btNext; rbDestFolder; btNext; cbDirectory=C:\\Src; btBrowseFolder";
  OpenProject();
  for (const char* picked : {"", "C:\\Picked"}) {
    FFrontEnd.Picked = picked;
    Show(kUndo,
         [&](auto& form) { EXPECT_EQ(form.edUndoFile.Text(), *picked ? picked : "C:\\App\\Undo.reu"); });
    EXPECT_EQ(FFrontEnd.AskedWith, "Undo files (*.reu)|*.reu|All files (*.*)|*.*|C:\\App|11");
    Show(kFolder, [&](auto& form) { EXPECT_EQ(form.cbDirectory.Text(), *picked ? picked : "C:\\Src"); });
    EXPECT_EQ(FFrontEnd.AskedWith, "Select directory||");
  }
}

TEST_F(WizardTest, Summaries) {
  const std::string project = "Scan destination: Current open project\n\n";
  const std::string folder = "Scan destination: Folder \"C:\\Src\"\n\n";
  const std::string mode = "Mode: Replace BDE/IBX components\n\n";
  const std::pair<std::string, std::string> rows[] = {
      {"rbModeReplaceIBX; btNext; btNext; lbModules[0]; btNext; btNext",
       mode + project + "Backup dir: \"C:\\App\\RBackup\"\n\nWrite log file\n\nUnits list:\nDATA.PAS\n"},
      {"btNext; btNext; btNext; chViewLog; chMakeBackup; btNext",
       mode + project + "Write log file\n\nView log afer replace\n\nUnits list:\nMain.pas\nDATA.PAS\n"},
      {kToSrc + "; chViewLog; chWriteLog; btNext", mode + folder + "Backup dir: \"C:\\Src\\RBackup\"\n\n"},
      {"rbModeRestore; btNext; edUndoFile=C:\\App\\Undo.reu; btNext",
       "Mode: Restore original files from backup\n\nUndo file: \"C:\\App\\Undo.reu\"\n\n"},
  };
  for (const auto& [steps, summary] : rows) {
    OpenProject();
    Show(steps, [&, &expected = summary](auto& form) { EXPECT_EQ(form.lSummary.Text(), expected); });
  }
}

TEST_F(WizardTest, FinishFillsTheOptionsAndCancelDoesNot) {
  const std::tuple<std::string, int, std::string> rows[] = {
      {"btNext; btNext; lbModules[0]; btNext; btNext; btFinish", rtl::mrOk,
       "0||0|1|C:\\App\\RBackup|1|0|DATA.PAS\r\n"},
      {"btNext; btNext; btNext; chMakeBackup; btNext; btFinish", rtl::mrOk,
       "0||0|0|C:\\App\\RBackup|1|0|Main.pas\r\nDATA.PAS\r\n"},
      {kToSrc + "; btPrev; chSubDirs; btNext; chViewLog; chWriteLog; btNext; btFinish", rtl::mrOk,
       "1|C:\\Src|1|1|C:\\Src\\RBackup|0|1|old"},
      // A restore sets the options, too, from the present state of the controls.
      {"rbModeRestore; btNext; edUndoFile=C:\\App\\Undo.reu; btNext; btFinish", rtl::mrOk,
       "0||0|1|C:\\App\\|1|0|"},
      {kToSrc + "; btNext; btCancel", rtl::mrCancel, "0||0|1||1|0|old"},
      {kToSrc + "; btNext", rtl::mrCancel, "0||0|1||1|0|old"},  // the system menu
  };
  for (const auto& [steps, result, filled] : rows) {
    SCOPED_TRACE(steps);
    OpenProject();
    FOptions = mig::TReplaceOptions("BDE/IBX");
    FOptions.UnitNames = "old";
    EXPECT_EQ(Show(steps), result);
    EXPECT_EQ(test::Describe(FOptions), filled);
  }
}

TEST_F(WizardTest, HistoryTakesNewFoldersInFrontUpToTen) {
  OpenProject();
  // Returns the list after a use with that folder.
  const auto listAfter = [&](const std::string& items, const std::string& folder) {
    std::string list;
    Show("", [&](auto& form) {
      rtl::TStringList lines;
      lines.SetText(items);
      form.cbDirectory.SetItems(lines);
      test::Play(form, "btNext; rbDestFolder; btNext; cbDirectory=" + folder + "; btNext; btNext; btFinish");
      list = form.cbDirectory.Items().Text();
    });
    return list;
  };
  EXPECT_EQ(listAfter("", "C:\\Src"), "C:\\Src\r\n");
  EXPECT_EQ(listAfter("D:\\\r\nC:\\Src", "C:\\Src2"), "C:\\Src2\r\nD:\\\r\nC:\\Src\r\n");
  EXPECT_EQ(listAfter("C:\\Src\r\nD:\\", "c:\\src"), "C:\\Src\r\nD:\\\r\n") << "a known folder stays";
  const std::string nine = "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n", src = "C:\\Src\r\n";
  EXPECT_EQ(listAfter(nine, "C:\\Src"), src + nine);
  EXPECT_EQ(listAfter(nine + "10", "C:\\Src"), src + nine);
  EXPECT_EQ(listAfter(nine + "10\r\n11\r\n12", "C:\\Src"), src + nine + "10\r\n11\r\n") << "one goes for one";
}

}  // namespace
