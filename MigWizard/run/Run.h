// One replacement run, from the list of units to the last replaced file. The object lives as long as the run,
// so that no state carries over to the next run.
//
// The walk does everything with a visible effect, one file after the other: log, temporary files, undo list.
// Files are read and converted ahead of it (FilesAhead.h); backups are made by tasks of the work queue. After
// all files are done, the changed ones are copied over their originals.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/Backups.h"
#include "MigWizard/run/ChangedFiles.h"
#include "MigWizard/run/DatabaseNames.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/FilesAhead.h"
#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunFolders.h"
#include "MigWizard/run/RunHooks.h"
#include "MigWizard/run/RunSelection.h"
#include "MigWizard/run/TwinFiles.h"
#include "MigWizard/run/WayBack.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/StringList.h"

namespace mig {

// The replacer's part of a run. Everything must outlive the run.
struct TRunContext {
  const TReplaceOptions& Options;
  const TRunHooks& Hooks;
  TRunLock& Lock;
  TLogWriter& Log;
  TFileConverter& Converter;       // for the walk
  TFileConverter& OtherConverter;  // for the worker, at the same time
  std::vector<TLeftOut>& LeftOut;  // receives what the run leaves out
  const TRunSelection* Selection;  // null: everything
  TRunPlan* Plan = nullptr;        // unless null, receives the files and their edits
};

class TRun {
 public:
  explicit TRun(const TRunContext& context);
  ~TRun();
  TRun(const TRun&) = delete;
  TRun& operator=(const TRun&) = delete;

  // Runs the replacement. Call once. Returns and raises what TComponentReplacer::Replace does.
  [[nodiscard]] bool Execute();

  // Runs everything before the last step, and writes nothing. Call once. The hooks get what the run would do.
  void Preview();

 private:
  bool ConvertAndReplace();
  void PrepareBackupFolder();
  void ReportOtherForms();
  void Walk(const std::string& tempDir);
  void WalkList(const std::string& tempDir);
  void CollectDatabaseNames(int firstForm);
  void ReportProgress(int done, std::string_view fileName) const;

  // --- One file (RunFile.cpp) ---
  void ProcessEntry(const std::string& fileName, TFilesAhead& files, const std::string& tempDir);
  void ProcessFile(const std::string& fileName, TFilesAhead& files, const std::string& targetDir);
  void ProcessUnit(const TFileConversion& unit, const std::string& sourceFile, const std::string& targetFile);
  void ProcessForm(const TFileConversion& form, const std::string& sourceFile, const std::string& targetFile);
  void AddForm(const std::string& form);
  void WriteChanged(const TFileConversion& file, const std::string& sourceFile,
                    const std::string& targetFile);
  void LogChanges(int changes);
  void LeaveOut(const std::string& name, const std::string& message);

  // --- The last step (RunReplacement.cpp) ---
  bool ReplaceOriginals(const std::string& tempDir);
  bool ReplaceWithJournal(const std::string& tempDir);
  // Writes everything to the disk. `replaced`: how many originals are replaced.
  void Flush(int replaced);
  void WriteUndoFile();

  const TReplaceOptions& FOptions;
  const TRunHooks& FHooks;
  TRunLock& FLock;
  TLogWriter& FLog;
  TFileConverter& FConverter;
  TFileConverter& FOtherConverter;
  std::vector<TLeftOut>& FLeftOut;
  const TRunSelection* const FSelection;
  TRunPlan* const FPlan;
  rtl::TStringList FUnits;  // work list: full names in processing order; grows during the walk
  int FFirstForm = 0;       // number of units in FUnits
  int FChangedFiles = 0;
  bool FIsPreview = false;
  TDatabaseNames FDatabases;
  std::map<std::string, std::string> FUnreadForms;  // whose databases are unknown, with the reason
  TTwinFiles FTwins;
  TFolderMaker FTempFolders;
  TChangedFiles FChanged;
  bool FHasJournal = false;
  TBackups FBackups;
  TWorkQueue FQueue;  // destroyed first, because its tasks use the other members
};

}  // namespace mig
