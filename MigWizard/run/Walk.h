// The walk of a run over its files, one after the other. It does all visible work before the last step:
// writes the log and the changed versions, and adds backups. Files are read and converted ahead of it
// (FilesAhead.h).
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/Backups.h"
#include "MigWizard/run/ChangedFiles.h"
#include "MigWizard/run/DatabaseNames.h"
#include "MigWizard/run/FileVersion.h"
#include "MigWizard/run/FilesAhead.h"
#include "MigWizard/run/NameClashes.h"
#include "MigWizard/run/RunContext.h"
#include "MigWizard/run/RunFolders.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/StringList.h"

namespace mig {

class TWalk {
 public:
  // No argument is owned. The converters have the settings of the run until the walk is destroyed; no task of
  // the queue may use them then.
  TWalk(const TRunContext& context, TChangedFiles& changed, TBackups& backups, TWorkQueue& queue);
  ~TWalk();
  TWalk(const TWalk&) = delete;
  TWalk& operator=(const TWalk&) = delete;

  // Finds the units of the run. Call first.
  void FindUnits();

  // Converts all files and writes the changed versions below `tempDir`, a full Windows path. Returns, or
  // passes on an exception of a file, after all pending backups are made. Call once.
  void Execute(const std::string& tempDir);
  // Does the same and writes nothing. The hooks and the plan get the results of the conversion.
  void Preview();

  // Returns how often a changed version was made; in a preview, would have been made.
  int ChangedFiles() const { return FChangedFiles; }

 private:
  void WalkList(const std::string& tempDir);
  void CollectDatabaseNames(int firstForm);
  void ReportOtherForms();
  void ReportProgress(int done, std::string_view fileName) const;

  void ProcessEntry(const std::string& fileName, TFilesAhead& files, const std::string& tempDir);
  void ProcessFile(const std::string& fileName, TFilesAhead& files, const std::string& targetDir);
  // ReadEarly returns the bytes of a form on which other files depend: the forms that refer to its databases,
  // or the completion of its unit. In a strict run, RequireSameAsEarly raises EFileEdited if the form has
  // changed when it is read again to be converted.
  std::string ReadEarly(const std::string& formFile);
  void RequireSameAsEarly(const std::string& formFile, const TFileVersion& version);
  void ProcessUnit(const TFileConversion& unit, const std::string& sourceFile, const std::string& targetFile);
  void ProcessForm(const TFileConversion& form, const std::string& sourceFile, const std::string& targetFile);
  void AddForm(const std::string& form);
  void WriteChanged(const TFileConversion& file, const std::string& sourceFile,
                    const std::string& targetFile);
  void LogChanges(int changes);
  void LeaveOut(const std::string& name, const std::string& message);

  const TReplaceOptions& FOptions;
  const TRunHooks& FHooks;
  TLogWriter& FLog;
  TFileConverter& FConverter;
  TFileConverter& FOtherConverter;
  std::vector<TLeftOut>& FLeftOut;
  const TRunSelection* const FSelection;
  TRunPlan* const FPlan;
  TChangedFiles& FChanged;
  TBackups& FBackups;
  TWorkQueue& FQueue;
  rtl::TStringList FUnits;                // work list: full names in processing order; grows during the walk
  int FFirstForm = 0;                     // number of units in FUnits
  std::vector<std::string> FListedForms;  // form files in the folders of the run, if OnOtherForm is set
  int FChangedFiles = 0;
  bool FIsPreview = false;
  TDatabaseNames FDatabases;
  std::map<std::string, std::string> FUnreadForms;  // whose databases are unknown, with the reason
  std::map<std::string, std::vector<TFileVersion>> FEarlyVersions;  // by upper-cased full name
  std::mutex FVersionsLock;
  TNameClashes FNameClashes;
  TFolderMaker FTempFolders;
};

}  // namespace mig
