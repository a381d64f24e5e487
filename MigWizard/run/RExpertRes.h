// All texts for the user that are not part of a form's layout, and the names that the system leaves on a
// machine. Spelling, blanks and full stops are part of the texts: users search their logs for them, and
// scripts read those logs.
//
// The constants are character arrays, so that they convert to std::string_view and can be added to
// std::string. Texts with %s or %d are for rtl::Format.
#pragma once

namespace mig {

// --- Titles and the log of a run ---
inline constexpr char SMigrationWizard[] = " Migration Wizard";
inline constexpr char SLog[] = " log";
inline constexpr char SCreatedAt[] = "Created at:";
inline constexpr char SInitUnitList[] = "Initializing unit list";
inline constexpr char SCreateBackupFolder[] = "Creating backup folder";
inline constexpr char SAllocTempFolder[] = "Allocating temporary folder";
inline constexpr char SProcessingFile[] = "Processing file: %s";
inline constexpr char SNoChanges[] = "No changes";
inline constexpr char SChanges[] = " change(s)";
inline constexpr char SReplacingOriginals[] = "Replacing original files with changed versions";
inline constexpr char SRemoveTempFolder[] = "Removing temporary folder";
inline constexpr char SBackupFile[] = "Backup file: %s";
inline constexpr char SCannotCreateDir[] = "Failed to create directory.";

// --- The wizard ---
inline constexpr char SWizardCaption[] = "%s Migration Wizard - Step %d of %d";
inline constexpr char SWelcome[] =
    "Wizard facilitates converting your application to %s. "
    "It replaces all standard %s components to corresponding %s components. "
    "You may need to make some changes manually to compile your application successfully.";
inline constexpr char STargetDirNotExist[] = "Target directory \"%s\" does not exist.";
inline constexpr char SSelectDirectory[] = "Select directory";
inline constexpr char SUndoFileNotExist[] = "Undo file \"%s\" does not exist.";
inline constexpr char SNoUnitsSelected[] = "At least one unit should be selected.";
inline constexpr char SMode[] = "Mode: ";
inline constexpr char SModeReplace[] = "Replace %s components";
inline constexpr char SModeRestore[] = "Restore original files from backup";
inline constexpr char SUndoFile[] = "Undo file: \"%s\"";
inline constexpr char SScanDest[] = "Scan destination: ";
inline constexpr char SDestProject[] = "Current open project";
inline constexpr char SDestFolder[] = "Folder \"%s\"";
inline constexpr char SBackupDir[] = "Backup dir: \"%s\"";
inline constexpr char SWriteLog[] = "Write log file";
inline constexpr char SViewLog[] = "View log afer replace";
inline constexpr char SUnitsList[] = "Units list:";

// --- Settings and the undo file ---
inline constexpr char SRegistryRoot[] = "Software\\Tarvex";
inline constexpr char SUndoFileName[] = "RExpert.reu";
// The undo file while the originals are being replaced. It is renamed to the undo file at the end.
inline constexpr char SJournalFileName[] = "RExpert.reu.journal";
inline constexpr char SBackupFolderName[] = "RBackup";

// --- The question before a run ---
inline constexpr char SFormsWillBeHidden[] = "Project forms will be hidden.";
inline constexpr char SFilesWillBeRestored[] = "Old files will be restored from backup. Continue?";
inline constexpr char SProjectWillBeSaved[] = "Current project will be saved. Continue?";
inline constexpr char SProjectWillBeClosed[] = "Current project will be closed.";

// --- The expert ---
inline constexpr char SExpertID[] = "Tarvex.%sMigrationWizard";
inline constexpr char SExpertItem[] = "RExpertItem";
inline constexpr char SReplaceComponents[] = "&Replace %s components";
inline constexpr char SCannotStartReplace[] = "Cannot start replace process.";
inline constexpr char SProjectNotSaved[] = "Project was not saved.";
inline constexpr char SReplaceSuccess[] =
    "Replace procedure was performed sucessfully.";  // the log's last line too
inline constexpr char SReplaceFailed[] = "Replace failed.";
inline constexpr char SRestoreSuccess[] = "Files were succefully restored.";
inline constexpr char SRestoreFailed[] = "Failed to restore files.";

}  // namespace mig
