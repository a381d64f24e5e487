#include "MigWizard/wizard/WizardPages.h"

namespace mig {

namespace {

using enum rtl::TControlKind;

constexpr rtl::TActionRow kActions[] = {
    {"actBack", "< Back", "actBackExecute", "actBackUpdate"},
    {"actNext", "Next >", "actNextExecute", "actNextUpdate"},
    {"actFinish", "Finish", "actFinishExecute", "actFinishUpdate"},
    {"actMakeBackup", "&Make backup", "actMakeBackupExecute", "actMakeBackupUpdate"},
    {"actWriteLog", "&Write log", "actWriteLogExecute", "actWriteLogUpdate"},
};

// clang-format off
constexpr rtl::TControlRow kControls[] = {
    {.Parent = "", .Kind = Image, .Name = "Image1"},
    {.Parent = "", .Kind = PageControl, .Name = "StepsPageControl", .Place = {.Width = 68, .Height = 260}},
    {.Parent = "StepsPageControl", .Kind = TabSheet, .Name = "Step1Sheet"},
    {.Parent = "StepsPageControl", .Kind = TabSheet, .Name = "Step2RestoreSheet"},
    {.Parent = "StepsPageControl", .Kind = TabSheet, .Name = "Step2ReplaceSheet"},
    {.Parent = "StepsPageControl", .Kind = TabSheet, .Name = "Step3ProjSheet"},
    {.Parent = "StepsPageControl", .Kind = TabSheet, .Name = "Step3DirSheet"},
    {.Parent = "StepsPageControl", .Kind = TabSheet, .Name = "Step4Sheet"},
    {.Parent = "StepsPageControl", .Kind = TabSheet, .Name = "FinalStepSheet"},

    {.Parent = "Step1Sheet", .Kind = Label, .Name = "Label3", .Text = "Step 1 - Select mode", .Bold = true},
    {.Parent = "Step1Sheet", .Kind = Label, .Name = "Label1", .Text = "Welcome to Migration Wizard", .Bold = true,
     .Place = {.GapAbove = true}},
    {.Parent = "Step1Sheet", .Kind = Label, .Name = "Label2", .Text = "fmtWizardFormLabel"},
    {.Parent = "Step1Sheet", .Kind = Label, .Name = "Label11",
     .Text = "If any problem occurs during the migration process, you can restore your project from backup files. "
             "However, it is highly recommended to make a reserved copy of your project before running the migration "
             "process.", .Place = {.GapAbove = true}},
    {.Parent = "Step1Sheet", .Kind = RadioButton, .Name = "rbModeReplace", .Text = "&Replace BDE components",
     .Checked = true, .OnClick = "rbModeReplaceClick", .Place = {.GapAbove = true}},
    {.Parent = "Step1Sheet", .Kind = RadioButton, .Name = "rbModeRestore",
     .Text = "R&estore original files from backup", .OnClick = "rbModeReplaceClick"},

    {.Parent = "Step2RestoreSheet", .Kind = Label, .Name = "Label4", .Text = "Step 2 - Select backup file",
     .Bold = true},
    {.Parent = "Step2RestoreSheet", .Kind = Label, .Name = "lUndo", .Text = "&Backup file:",
     .FocusControl = "edUndoFile", .Place = {.GapAbove = true}},
    {.Parent = "Step2RestoreSheet", .Kind = Edit, .Name = "edUndoFile"},
    {.Parent = "Step2RestoreSheet", .Kind = Button, .Name = "btRestoreBrowse", .Text = "Bro&wse...",
     .OnClick = "btRestoreBrowseClick", .Place = {.Beside = true}},
    {.Parent = "Step2RestoreSheet", .Kind = Label, .Name = "Label5",
     .Text = "Note: Backup file is created while replacing if 'Make backup' option is selected.",
     .Place = {.GapAbove = true}},

    {.Parent = "Step2ReplaceSheet", .Kind = Label, .Name = "Label6",
     .Text = "Step 2 - Select location of files to search", .Bold = true},
    {.Parent = "Step2ReplaceSheet", .Kind = RadioButton, .Name = "rbDestProject", .Text = "&Current open project",
     .Checked = true, .Place = {.GapAbove = true}},
    {.Parent = "Step2ReplaceSheet", .Kind = RadioButton, .Name = "rbDestFolder", .Text = "&Disk folder"},
    {.Parent = "Step2ReplaceSheet", .Kind = Label, .Name = "Label7",
     .Text = "Note: Using 'Current open project' option gives more information about files.",
     .Place = {.GapAbove = true}},

    {.Parent = "Step3ProjSheet", .Kind = Label, .Name = "Label8",
     .Text = "Step 3 - Select units to replace components", .Bold = true},
    {.Parent = "Step3ProjSheet", .Kind = CheckListBox, .Name = "lbModules", .Place = {.GapAbove = true}},
    {.Parent = "Step3ProjSheet", .Kind = Button, .Name = "btSelect", .Text = "Select All",
     .OnClick = "btSelectClick"},
    {.Parent = "Step3ProjSheet", .Kind = Button, .Name = "btDeselect", .Text = "Deselect All",
     .OnClick = "btDeselectClick", .Place = {.Beside = true}},

    {.Parent = "Step3DirSheet", .Kind = Label, .Name = "Label9", .Text = "Step 3 - Select folder to search units",
     .Bold = true},
    {.Parent = "Step3DirSheet", .Kind = Label, .Name = "lSource", .Text = "Target &folder:",
     .FocusControl = "cbDirectory", .Place = {.GapAbove = true}},
    {.Parent = "Step3DirSheet", .Kind = ComboBox, .Name = "cbDirectory"},
    {.Parent = "Step3DirSheet", .Kind = Button, .Name = "btBrowseFolder", .Text = "&Browse...",
     .OnClick = "btBrowseFolderClick", .Place = {.Beside = true}},
    {.Parent = "Step3DirSheet", .Kind = CheckBox, .Name = "chSubDirs", .Text = "Include &subfolders",
     .Place = {.GapAbove = true}},

    {.Parent = "Step4Sheet", .Kind = Label, .Name = "Label10", .Text = "Step 4 - Set advanced options", .Bold = true},
    {.Parent = "Step4Sheet", .Kind = CheckBox, .Name = "chMakeBackup", .Text = "&Make backup", .Checked = true,
     .Action = "actMakeBackup", .Place = {.GapAbove = true}},
    {.Parent = "Step4Sheet", .Kind = Label, .Name = "lBackupFolder", .Text = "Backup &folder:",
     .FocusControl = "cbBackupDir", .Place = {.Indented = true}},
    {.Parent = "Step4Sheet", .Kind = ComboBox, .Name = "cbBackupDir", .OnChange = "cbBackupDirChange",
     .Place = {.Indented = true}},
    {.Parent = "Step4Sheet", .Kind = Button, .Name = "btBrowseBackFolder", .Text = "&Browse...",
     .OnClick = "btBrowseBackFolderClick", .Place = {.Beside = true}},
    {.Parent = "Step4Sheet", .Kind = CheckBox, .Name = "chWriteLog", .Text = "&Write log", .Checked = true,
     .Action = "actWriteLog", .Place = {.GapAbove = true}},
    {.Parent = "Step4Sheet", .Kind = Label, .Name = "lblLogNote",
     .Text = "Note: Log file will be placed in project folder or target folder you selected.",
     .Place = {.Indented = true}},
    {.Parent = "Step4Sheet", .Kind = CheckBox, .Name = "chViewLog", .Text = "View log after replace",
     .Place = {.Indented = true}},

    {.Parent = "FinalStepSheet", .Kind = Label, .Name = "Label13", .Text = "Step 5 - Start units converting",
     .Bold = true},
    {.Parent = "FinalStepSheet", .Kind = Label, .Name = "Label15",
     .Text = "If you want to review or change any settings, click Back. Otherwise click Finish to start replacing.",
     .Place = {.GapAbove = true}},
    {.Parent = "FinalStepSheet", .Kind = Label, .Name = "Label14", .Text = "Summary:",
     .Place = {.GapAbove = true}},
    {.Parent = "FinalStepSheet", .Kind = ScrollBox, .Name = "sbSummary"},
    {.Parent = "sbSummary", .Kind = Label, .Name = "lSummary"},

    {.Parent = "", .Kind = Bevel, .Name = "Bevel1"},
    {.Parent = "", .Kind = Button, .Name = "btPrev", .Text = "< Back", .Action = "actBack"},
    // At most one of the two default buttons is enabled.
    {.Parent = "", .Kind = Button, .Name = "btNext", .Text = "Next >", .Default = true, .Action = "actNext"},
    {.Parent = "", .Kind = Button, .Name = "btFinish", .Text = "Finish", .Default = true,
     .ModalResult = rtl::mrOk, .Action = "actFinish"},
    {.Parent = "", .Kind = Button, .Name = "btCancel", .Text = "Cancel", .Cancel = true,
     .ModalResult = rtl::mrCancel},
};
// clang-format on

}  // namespace

const rtl::TFormResource kWizardFormResource = {
    .Name = "WizardForm",
    .Caption = "BDE Migration Wizard",
    .OnShow = "FormShow",
    .OnClose = "FormClose",
    .Actions = kActions,
    .Controls = kControls,
};

}  // namespace mig
