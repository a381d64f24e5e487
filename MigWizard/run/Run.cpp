#include "MigWizard/run/Run.h"

#include <limits>

#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/UnitList.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {

TRun::TRun(const TRunContext& context)
    : FOptions(context.Options),
      FHooks(context.Hooks),
      FLog(context.Log),
      FConverter(context.Converter),
      FOtherConverter(context.OtherConverter),
      FBackups(FOptions, FHooks, FQueue) {
  for (TFileConverter* const converter : {&FConverter, &FOtherConverter}) {
    converter->OnGetDatabase = [this](std::string_view alias, const qrl::TEncoding& encoding) {
      return FDatabases.Find(alias, encoding);
    };
  }
}

TRun::~TRun() {
  FQueue.Cancel();
  FConverter.OnGetDatabase = nullptr;
  FOtherConverter.OnGetDatabase = nullptr;
}

bool TRun::Execute() {
  FLog.WriteLine(SInitUnitList);
  InitUnitList(FOptions, FHooks, FUnits);
  if (FOptions.MakeBackup) {
    FLog.WriteLine(SCreateBackupFolder);
    CreateBackupFolder(FOptions, FHooks);
  }
  FLog.WriteLine(SAllocTempFolder);
  const TTempFolder temp(FHooks, FQueue);
  Walk(temp.Path());
  const bool succeeded = ReplaceOriginals(temp.Path());
  if (FOptions.MakeBackup) WriteUndoFile();
  FLog.WriteLine(SRemoveTempFolder);
  return succeeded;
}

void TRun::Walk(const std::string& tempDir) {
  try {
    WalkList(tempDir);
  } catch (...) {
    // The files before the one that failed have their backups all the same.
    try {
      FBackups.Wait();
    } catch (...) {  // what ended the walk is what the caller is told
    }
    throw;
  }
  FBackups.Wait();
  ReportProgress(FUnits.Count(), {});
}

// The units come first, and each appends its form files to the end of the list. In a project run all forms
// are read for their aliases before the first of them is converted.
void TRun::WalkList(const std::string& tempDir) {
  const int firstForm = FUnits.Count();
  bool prePass = FOptions.Dest == sdProject;
  TFilesAhead files(FUnits, FQueue, FConverter, FOtherConverter);
  if (prePass) files.ReadUpTo(firstForm);
  for (int i = 0; i < FUnits.Count(); ++i) {
    if (prePass && i >= firstForm) {
      CollectDatabaseNames(firstForm);
      prePass = false;
      files.ReadUpTo(std::numeric_limits<int>::max());
    }
    ReportProgress(i, FUnits[i]);
    const std::string fileName = FUnits[i];  // a copy: the list grows meanwhile
    ProcessEntry(fileName, files, tempDir);
  }
}

void TRun::CollectDatabaseNames(int firstForm) {
  for (int i = firstForm; i < FUnits.Count(); ++i) {
    ReportProgress(firstForm, FUnits[i]);
    FDatabases.Collect(FUnits[i]);
  }
}

void TRun::ReportProgress(int done, std::string_view fileName) const {
  FHooks.Report({done, FUnits.Count(), fileName});
}

void TRun::ProcessEntry(const std::string& fileName, TFilesAhead& files, const std::string& tempDir) {
  std::string relPath;
  if (FOptions.Dest == sdFolder) {
    FTwins.AddFullName(rtl::ExtractFileDir(fileName));
    relPath = rtl::ExtractRelativePath(JoinPath(FOptions.Directory, ""), fileName);
    FTempFolders.Need(JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  } else {
    FTwins.AddBareName(fileName);
  }
  const int changedBefore = FChangedFiles;
  ProcessFile(fileName, files, JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  if (FChangedFiles > changedBefore && FOptions.MakeBackup) FBackups.Add(fileName, relPath);
}

bool TRun::ReplaceOriginals(const std::string& tempDir) {
  if (FChangedFiles > 0) {
    FLog.WriteLine(SReplacingOriginals);
    if (!win::FileSystem().FlushWritten()) {
      throw rtl::EWriteError(rtl::Format("Cannot write the changed files to the disk. %s",
                                         {win::SysErrorMessage(win::GetLastError())}));
    }
  }
  const TCopyFailures failures = FOptions.Dest == sdFolder ? CopyFolder(tempDir, FOptions.Directory, FQueue)
                                                           : CopyFiles(tempDir, FUnits, FQueue);
  for (const auto& [fileName, error] : failures)
    FHooks.Warn(rtl::Format("\"%s\" could not be replaced. %s", {fileName, win::SysErrorMessage(error)}));
  return failures.empty();
}

// A run that changed nothing leaves the undo file of an earlier run.
void TRun::WriteUndoFile() {
  const std::string undoName = JoinPath(FOptions.BackupDir, SUndoFileName);
  const TUndoList& list = FBackups.UndoList();
  try {
    if (!list.Empty() || !rtl::FileExists(undoName)) list.Save(undoName);
  } catch (const rtl::EStreamError&) {
    if (FChangedFiles > 0)
      FHooks.Warn(rtl::Format(
          "The files are replaced, and their backups stand in \"%s\", but no undo file lists them.",
          {FOptions.BackupDir}));
    throw;
  }
  FLog.WriteLine(rtl::Format(SBackupFile, {undoName}));
  if (const std::string line = list.FirstAmbiguousLine(); !line.empty())
    FHooks.Warn(rtl::Format(
        "The undo file cannot restore files while it lists a name with \"=\" or a line end in it: %s",
        {line}));
}

}  // namespace mig
