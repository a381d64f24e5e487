#include <gtest/gtest.h>

#include "MigWizard/Wizard.h"
#include "RecordingHost.h"
#include "target/KVAWizard.h"

namespace {

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

  // Shows a new form, plays the steps on it, and then whatever else is asked for.
  int Show(std::string_view steps, const std::function<void(target::TKVAWizardForm&)>& look = {}) {
    const test::THostInForce host(FHost);
    target::TKVAWizardForm form;
    form.FProductName = "KORVA";
    form.FOptions = &FOptions;
    if (Prepare) Prepare(form);
    FFrontEnd.Script.push_back([&](rtl::TForm&) {
      test::Play(form, steps);
      if (look) look(form);
      if (form.ModalResult() == rtl::mrNone) form.Close();
    });
    const int result = form.ShowModal();
    EXPECT_EQ(form.lbModules.Count(), 0) << "FormClose empties the list";
    return result;
  }

  // "PAGE caption buttons": the page's name, the tail of the caption, and which of Back, Next, Finish can be
  // used.
  static std::string State(const target::TKVAWizardForm& form) {
    std::string state =
        form.StepsPageControl.ActivePage().Name() + form.Caption().substr(form.Caption().rfind("- "));
    for (const auto* action : {&form.actBack, &form.actNext, &form.actFinish}) {
      if (action->Enabled()) state += " " + action->Name().substr(3);
    }
    return state;
  }

  test::TScratch FScratch;
  test::THostState FHost;
  test::TScriptedFrontEnd FFrontEnd{FHost.Calls};
  mig::TReplaceOptions FOptions{"BDE/IBX"};
  std::function<void(target::TKVAWizardForm&)> Prepare;
};

TEST_F(WizardTest, Walk) {
  constexpr char kToProjectStep4[] = "btNext; btNext; btNext";
  constexpr char kToFolderStep4[] = "btNext; rbDestFolder; btNext; cbDirectory=C:\\Src; btNext";
  struct TRow {
    bool HasProject;
    std::string Steps, State, Message;
  };
  const std::string folder4 = kToFolderStep4;
  const std::string restore2 = "rbModeRestore; btNext";
  const TRow rows[] = {
      {true, "", "Step1Sheet- Step 1 of 5 Next", ""},
      {true, "btPrev", "Step1Sheet- Step 1 of 5 Next", ""},
      {true, "btFinish", "Step1Sheet- Step 1 of 5 Next", ""},
      {true, "rbModeRestore", "Step1Sheet- Step 1 of 3 Next", ""},
      {true, "rbModeRestore; rbModeReplaceIBX", "Step1Sheet- Step 1 of 5 Next", ""},
      {true, "rbModeRestore; rbModeReplace", "Step1Sheet- Step 1 of 5 Next", ""},
      // Replace in the project.
      {true, "btNext", "Step2ReplaceSheet- Step 2 of 5 Back Next", ""},
      {true, "rbModeReplaceIBX; btNext", "Step2ReplaceSheet- Step 2 of 5 Back Next", ""},
      {true, "btNext; btPrev", "Step1Sheet- Step 1 of 5 Next", ""},
      {true, "btNext; btNext", "Step3ProjSheet- Step 3 of 5 Back Next", ""},
      {true, "btNext; btNext; btPrev", "Step2ReplaceSheet- Step 2 of 5 Back Next", ""},
      {true, "btNext; btNext; btDeselect; btNext", "Step3ProjSheet- Step 3 of 5 Back Next",
       "Information: At least one unit should be selected."},
      {true, "btNext; btNext; btDeselect; lbModules[1]; btNext", "Step4Sheet- Step 4 of 5 Back Next", ""},
      {true, kToProjectStep4, "Step4Sheet- Step 4 of 5 Back Next", ""},
      {true, kToProjectStep4 + std::string("; btPrev"), "Step3ProjSheet- Step 3 of 5 Back Next", ""},
      {true, kToProjectStep4 + std::string("; btNext"), "FinalStepSheet- Step 5 of 5 Back Finish", ""},
      {true, kToProjectStep4 + std::string("; btNext; btNext"), "FinalStepSheet- Step 5 of 5 Back Finish",
       ""},
      {true, kToProjectStep4 + std::string("; btNext; btPrev"), "Step4Sheet- Step 4 of 5 Back Next", ""},
      // Replace in a folder.
      {true, "btNext; rbDestFolder; btNext", "Step3DirSheet- Step 3 of 5 Back", ""},
      {true, "btNext; rbDestFolder; btNext; cbDirectory=C:\\No; btNext",
       "Step3DirSheet- Step 3 of 5 Back Next",
       "Box 64 BDE/IBX Migration Wizard: Target directory \"C:\\No\" does not exist."},
      {true, folder4, "Step4Sheet- Step 4 of 5 Back Next", ""},
      {true, folder4 + "; btPrev", "Step3DirSheet- Step 3 of 5 Back Next", ""},
      {true, folder4 + "; btPrev; btPrev", "Step2ReplaceSheet- Step 2 of 5 Back Next", ""},
      {true, folder4 + "; btNext", "FinalStepSheet- Step 5 of 5 Back Finish", ""},
      // Restore.
      {true, restore2, "Step2RestoreSheet- Step 2 of 3 Back", ""},
      {true, restore2 + "; edUndoFile=C:\\No.reu; btNext", "Step2RestoreSheet- Step 2 of 3 Back Next",
       "Box 64 BDE/IBX Migration Wizard: Undo file \"C:\\No.reu\" does not exist."},
      {true, restore2 + "; edUndoFile=C:\\App; btNext", "Step2RestoreSheet- Step 2 of 3 Back Next",
       "Box 64 BDE/IBX Migration Wizard: Undo file \"C:\\App\" does not exist."},
      {true, restore2 + "; edUndoFile=C:\\App\\Undo.reu; btNext", "FinalStepSheet- Step 3 of 3 Back Finish",
       ""},
      {true, restore2 + "; edUndoFile=C:\\App\\Undo.reu; btNext; btPrev",
       "Step2RestoreSheet- Step 2 of 3 Back Next", ""},
      {true, restore2 + "; btPrev", "Step1Sheet- Step 1 of 3 Next", ""},
      // No project: the scope is a folder, and the other cannot be chosen.
      {false, "btNext; rbDestProject; btNext", "Step3DirSheet- Step 3 of 5 Back", ""},
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Steps);
    FHost.ProjectFile.clear();
    if (row.HasProject) OpenProject();
    FFrontEnd.Shown.clear();
    Show(row.Steps, [&](auto& form) { EXPECT_EQ(State(form), row.State); });
    EXPECT_EQ(FFrontEnd.Shown.size() > 1 ? FFrontEnd.Shown[1] : "", row.Message);
  }
}

TEST_F(WizardTest, FocusGoesWhereAMessagePointsTo) {
  OpenProject();
  const std::pair<const char*, const char*> rows[] = {
      {"rbModeRestore; btNext; edUndoFile=C:\\No; btNext", "edUndoFile"},
      {"btNext; rbDestFolder; btNext; cbDirectory=C:\\No; btNext", "cbDirectory"},
      {"btNext; btNext; btDeselect; btNext", "lbModules"},
  };
  for (const auto& [steps, focused] : rows) {
    Show(steps, [&, name = focused](auto& form) { EXPECT_EQ(form.ActiveControl()->Name(), name); });
  }
}

TEST_F(WizardTest, TextsThatTheExpertGives) {
  Prepare = [](auto& form) {
    form.SetWelcomeText("BDE/IBX", "KORVA");
    form.rbModeReplace.SetText("&Replace BDE/IBX components");
  };
  Show("", [](auto& form) {
    EXPECT_EQ(form.Caption(), "KORVA Migration Wizard - Step 1 of 5");
    EXPECT_EQ(form.rbModeReplace.Text(), "&Replace BDE components") << "the form's own text comes last";
    EXPECT_EQ(form.Label2.Text(),
              "Wizard facilitates converting your application to KORVA. It replaces all standard BDE/IBX "
              "components to "
              "corresponding KORVA components. You may need to make some changes manually to compile your "
              "application "
              "successfully.");
  });
}

TEST_F(WizardTest, ModesExcludeOneAnotherAndChooseTheReplacer) {
  const std::pair<const char*, int> rows[] = {{"", 0},
                                              {"rbModeReplaceIBX", 1},
                                              {"rbModeRestore", 100},
                                              {"rbModeRestore; rbModeReplaceIBX", 1},
                                              {"rbModeReplaceIBX; rbModeReplace", 0}};
  for (const auto& [steps, index] : rows) {
    Show(steps, [&, expected = index](auto& form) {
      EXPECT_EQ(form.GetReplacerIndex(), expected);
      EXPECT_EQ(form.rbModeReplace.Checked() + form.rbModeReplaceIBX.Checked() + form.rbModeRestore.Checked(),
                1);
    });
  }
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
  constexpr char kSrc[] = "btNext; rbDestFolder; btNext; cbDirectory=C:\\Src; btNext";
  constexpr char kSrc2[] = "; btPrev; cbDirectory=C:\\Src2; btNext";
  struct TRow {
    std::string Steps, Shown, InEffect;
  };
  const std::string src = kSrc;
  const TRow rows[] = {
      {"btNext; btNext; btNext", "C:\\App\\RBackup", "C:\\App\\RBackup"},
      {src, "C:\\Src\\RBackup", "C:\\Src\\RBackup"},
      {src + kSrc2, "C:\\Src2\\RBackup", "C:\\Src2\\RBackup"},
      {src + "; cbBackupDir=Old" + kSrc2, "Old", "C:\\Src2\\Old"},
      {src + "; cbBackupDir=\\Old", "\\Old", "C:\\Src\\Old"},
      {src + "; cbBackupDir=D:\\B" + kSrc2, "D:\\B", "D:\\B"},
      {src + "; cbBackupDir=\\\\srv\\share\\B", "\\\\srv\\share\\B", "\\\\srv\\share\\B"},
      {src + "; cbBackupDir=", "", "C:\\Src\\"},
      {src + "; btBrowseBackFolder" + kSrc2, "C:\\Picked", "C:\\Picked"},
  };
  FFrontEnd.Picked = "C:\\Picked";
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Steps);
    OpenProject();
    Show(row.Steps, [&](auto& form) {
      EXPECT_EQ(form.cbBackupDir.Text(), row.Shown);
      EXPECT_EQ(form.GetBackupDir(), row.InEffect);
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
  const std::string src = "btNext; rbDestFolder; btNext; cbDirectory=C:\\Src; btNext";
  const std::string mode = "Mode: Replace BDE/IBX components\n\n";
  const std::pair<std::string, std::string> rows[] = {
      {"rbModeReplaceIBX; btNext; btNext; lbModules[0]; btNext; btNext",
       mode + project + "Backup dir: \"C:\\App\\RBackup\"\n\nWrite log file\n\nUnits list:\nDATA.PAS\n"},
      {"btNext; btNext; btNext; chViewLog; chMakeBackup; btNext",
       mode + project + "Write log file\n\nView log afer replace\n\nUnits list:\nMain.pas\nDATA.PAS\n"},
      {src + "; chViewLog; chWriteLog; btNext", mode + folder + "Backup dir: \"C:\\Src\\RBackup\"\n\n"},
      {"rbModeRestore; btNext; edUndoFile=C:\\App\\Undo.reu; btNext",
       "Mode: Restore original files from backup\n\nUndo file: \"C:\\App\\Undo.reu\"\n\n"},
  };
  for (const auto& [steps, summary] : rows) {
    OpenProject();
    Show(steps, [&, &expected = summary](auto& form) { EXPECT_EQ(form.lSummary.Text(), expected); });
  }
}

std::string Describe(const mig::TReplaceOptions& options) {
  return rtl::Format("%d|%s|%d|%d|%s|%d|%d|%s",
                     {options.Dest, options.Directory, options.IncludeSubDirs, options.MakeBackup,
                      options.BackupDir, options.WriteLog, options.ViewLog, options.UnitNames});
}

TEST_F(WizardTest, FinishFillsTheOptionsAndCancelDoesNot) {
  const std::string src = "btNext; rbDestFolder; btNext; cbDirectory=C:\\Src; chSubDirs; btNext";
  struct TRow {
    std::string Steps;
    int Result;
    std::string Options;
  };
  const TRow rows[] = {
      {"btNext; btNext; lbModules[0]; btNext; btNext; btFinish", rtl::mrOk,
       "0||0|1|C:\\App\\RBackup|1|0|DATA.PAS\r\n"},
      {"btNext; btNext; btNext; chMakeBackup; btNext; btFinish", rtl::mrOk,
       "0||0|0|C:\\App\\RBackup|1|0|Main.pas\r\nDATA.PAS\r\n"},
      {src + "; chViewLog; chWriteLog; btNext; btFinish", rtl::mrOk,
       "1|C:\\Src|1|1|C:\\Src\\RBackup|0|1|old"},
      // The restore fills them, too, with whatever stands in the controls.
      {"rbModeRestore; btNext; edUndoFile=C:\\App\\Undo.reu; btNext; btFinish", rtl::mrOk,
       "0||0|1|C:\\App\\|1|0|"},
      {src + "; btNext; btCancel", rtl::mrCancel, "0||0|1||1|0|old"},
      {src + "; btNext", rtl::mrCancel, "0||0|1||1|0|old"},  // the system menu
  };
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Steps);
    OpenProject();
    FOptions = mig::TReplaceOptions("BDE/IBX");
    FOptions.UnitNames = "old";
    EXPECT_EQ(Show(row.Steps), row.Result);
    EXPECT_EQ(Describe(FOptions), row.Options);
  }
}

TEST_F(WizardTest, HistoryTakesNewFoldersInFrontUpToTen) {
  OpenProject();
  rtl::TStringList items;
  const auto finishWith = [&](const std::string& folder) {
    Prepare = [&](auto& form) { form.cbDirectory.SetItems(items); };
    Show("btNext; rbDestFolder; btNext; cbDirectory=" + folder + "; btNext; btNext; btFinish",
         [&](auto& form) { items = form.cbDirectory.Items(); });
  };
  finishWith("C:\\Src");
  finishWith("C:\\Src2");
  finishWith("c:\\src");
  EXPECT_EQ(items.Text(), "C:\\Src2\r\nC:\\Src\r\n") << "a known folder stays where it is";

  items.Clear();
  for (int i = 0; i < 12; ++i) items.Add(rtl::Format("C:\\%d", {i}));
  finishWith("C:\\Src");
  EXPECT_EQ(items.Count(), 12) << "one insertion removes one entry";
  items.Delete(11);
  items.Delete(10);
  finishWith("C:\\Src2");
  EXPECT_EQ(items.Count(), 10);
  EXPECT_EQ(items[0], "C:\\Src2");
  EXPECT_EQ(items[9], "C:\\7");
}

}  // namespace
