#include "MigWizard/run/Replacer.h"

#include <limits>
#include <utility>

#include "MigWizard/run/FilesAhead.h"
#include "MigWizard/run/HeldFolders.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Restore.h"
#include "MigWizard/run/Team.h"
#include "qrl/QrlVcl.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

constexpr char kLogName[] = "Wiz_Log.txt";
constexpr char kTempPrefix[] = "$DS";
constexpr size_t kMostBackupsAhead = 32;  // that wait to be made, while the walk goes on

// Whether two spellings name one file. Most that differ do not even look alike.
bool IsSameFile(const std::string& left, const std::string& right) {
  if (left == right) return true;
  if (win::UpperFileName(left) != win::UpperFileName(right)) return false;
  return win::FileSystem().GetLongPathNameA(left) == win::FileSystem().GetLongPathNameA(right);
}

std::string LastReason() {
  return win::SysErrorMessage(win::GetLastError());
}

// A backup of an earlier run may be read-only, as its original was. It gives way.
bool CopyBackup(const std::string& fileName, const std::string& backupName) {
  if (win::CopyFileA(fileName, backupName, false)) return true;
  return rtl::FileExists(backupName) && win::FileSystem().CopyPermissions(fileName, backupName) &&
         win::CopyFileA(fileName, backupName, false);
}

// Runs `action` at the end of its block, also when an exception passes.
template <typename TAction>
class TFinally {
 public:
  explicit TFinally(TAction action) : FAction(std::move(action)) {}
  ~TFinally() { FAction(); }
  TFinally(const TFinally&) = delete;
  TFinally& operator=(const TFinally&) = delete;

 private:
  TAction FAction;
};

}  // namespace

EFileConversion::EFileConversion(std::string_view fileName, std::string_view reason)
    : Exception(std::string(fileName).append(": ").append(reason)), FFileName(fileName) {}

TComponentReplacer::TComponentReplacer(const TFormParserClass& parserClass, std::string_view oldUnit,
                                       std::string_view newUnits, TReplaceOptions& options)
    : FOldUnit(rtl::UpperCase(oldUnit)),
      FNewUnits(newUnits),
      FConverter(FClasses, FOldUnit, FNewUnits, parserClass(ParseStateClass<TFormParseState>())),
      FOtherConverter(FClasses, FOldUnit, FNewUnits, parserClass(ParseStateClass<TFormParseState>())),
      FOptions(options) {
  for (TFileConverter* const converter : {&FConverter, &FOtherConverter}) {
    converter->OnGetReplacement = [this](std::string_view oldClass, std::string_view newClass) {
      return GetReplacement(oldClass, newClass);
    };
    converter->OnGetDatabase = [this](std::string_view alias, const qrl::TEncoding& encoding) {
      return GetDatabaseValue(alias, encoding);
    };
  }
  FLog.SetTitle(FOptions.GetTitle() + SLog);
  FLog.SetCreatedCaption(SCreatedAt);
  FLog.SetDoubleSpaced(true);
}

TComponentReplacer::~TComponentReplacer() = default;

std::string TComponentReplacer::GetReplacement(std::string_view, std::string_view newClass) {
  return std::string(newClass);
}

// An alias is the same name in forms of different encodings.
std::string TComponentReplacer::AliasKey(std::string_view alias, const qrl::TEncoding& encoding) {
  return encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(alias) : std::string(alias);
}

std::string TComponentReplacer::GetDatabaseValue(std::string_view alias, const qrl::TEncoding& encoding) {
  const std::lock_guard lock(FDatabasesMutex);
  return std::string(FDatabases.Values(AliasKey(alias, encoding)));
}

void TComponentReplacer::Warn(std::string_view message) const {
  if (OnWarning) OnWarning(message);
}

std::string TComponentReplacer::LogFileName() const {
  return FOptions.WriteLog ? JoinPath(RunFolder(), kLogName) : std::string();
}

bool TComponentReplacer::Replace() {
  FUndoList.Clear();
  FChangedFiles = 0;
  const std::string logName = LogFileName();
  const THeldFolders held;
  if (FOptions.WriteLog) FLog.Open(logName);
  bool succeeded = false;
  {
    qrl::StartWait();
    const TFinally closeLog([this] {
      FLog.Close();
      qrl::StopWait();
    });
    InitUnitList();
    succeeded = RunFiles();
    if (succeeded) FLog.WriteLine(SReplaceSuccess);
  }
  if (FOptions.WriteLog && FOptions.ViewLog) win::ShellExecuteA("open", logName);
  return succeeded;
}

// From the backup folder to the last copy. FUnits is filled, and empty afterwards.
bool TComponentReplacer::RunFiles() {
  const TFinally clearUnits([this] { FUnits.Clear(); });
  if (FOptions.MakeBackup) {
    FLog.WriteLine(SCreateBackupFolder);
    // A file of that name satisfies ForceFolders, and could hold no backup.
    if (!ForceFolders(FOptions.BackupDir) || !rtl::DirectoryExists(FOptions.BackupDir)) {
      Warn(rtl::Format("The backup folder \"%s\" cannot be made. %s", {FOptions.BackupDir, LastReason()}));
      throw rtl::EFCreateError(SCannotCreateDir);
    }
  }
  FLog.WriteLine(SAllocTempFolder);
  const std::string tempDir = CreateTempFolder(kTempPrefix, 1);
  if (tempDir.empty()) {
    Warn(rtl::Format("No temporary folder can be made in \"%s\". %s", {win::GetTempPathA(), LastReason()}));
    throw rtl::EFCreateError(SCannotCreateDir);
  }
  TTeam team;
  const TFinally deleteTemp([&] { DeleteTempFolder(tempDir, team); });

  WalkUnits(team, tempDir);
  const bool succeeded = ReplaceOriginals(team, tempDir);
  if (FOptions.MakeBackup) WriteUndoFile();
  FLog.WriteLine(SRemoveTempFolder);
  return succeeded;
}

// The units come first, and each appends its form files behind all that is there. In a project run all forms
// are read for their aliases before the first of them is converted.
void TComponentReplacer::WalkUnits(TTeam& team, const std::string& tempDir) {
  FDatabases.Clear();
  FProcessed.clear();
  FNames.clear();
  FCheckedNames.clear();
  FFolders.clear();
  FBackups.clear();
  try {
    WalkList(team, tempDir);
  } catch (...) {
    // The files that were dealt with before have their backups all the same.
    try {
      FinishBackups(team);
    } catch (...) {  // what ended the walk is told
    }
    throw;
  }
  FinishBackups(team);
  ReportProgress(FUnits.Count(), {});
}

void TComponentReplacer::WalkList(TTeam& team, const std::string& tempDir) {
  const int firstAdded = FUnits.Count();
  bool prePass = FOptions.Dest == sdProject;
  TFilesAhead files(FUnits, team, FConverter, FOtherConverter);
  if (prePass) files.ReadUpTo(firstAdded);
  for (int i = 0; i < FUnits.Count(); ++i) {
    if (prePass && i >= firstAdded) {
      for (int form = firstAdded; form < FUnits.Count(); ++form) {
        ReportProgress(i, FUnits[form]);
        CollectDatabaseNames(FUnits[form]);
      }
      prePass = false;
      files.ReadUpTo(std::numeric_limits<int>::max());
    }
    ReportProgress(i, FUnits[i]);
    // A copy of the name: the list that it comes from grows meanwhile.
    const std::string fileName = FUnits[i];
    ProcessEntry(fileName, files, team, tempDir);
  }
}

void TComponentReplacer::ReportProgress(int done, std::string_view fileName) const {
  if (OnProgress) OnProgress({done, FUnits.Count(), fileName});
}

void TComponentReplacer::ProcessEntry(const std::string& fileName, TFilesAhead& files, TTeam& team,
                                      const std::string& tempDir) {
  std::string relPath;
  if (FOptions.Dest == sdFolder) {
    RefuseCaseTwin(rtl::ExtractFileDir(fileName));
    relPath = rtl::ExtractRelativePath(JoinPath(FOptions.Directory, ""), fileName);
    NeedFolder(JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  } else {
    RefuseSecondFile(fileName);
  }
  const int changedBefore = FChangedFiles;
  ProcessFile(fileName, files, JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  if (FChangedFiles > changedBefore && FOptions.MakeBackup) BackupFile(fileName, relPath, team);
}

// The folders of a project run are flat: one bare name has one place in them.
void TComponentReplacer::RefuseSecondFile(const std::string& fileName) {
  const std::string bareName = rtl::ExtractFileName(fileName);
  const auto [place, isNew] = FProcessed.try_emplace(win::UpperFileName(bareName), fileName);
  if (isNew || IsSameFile(place->second, fileName)) return;
  throw ETwinFiles(
      rtl::Format("Two files named \"%s\" cannot be converted in one project run: \"%s\" and \"%s\".",
                  {bareName, place->second, fileName}),
      place->second, fileName);
}

// On a host where names that differ in case alone can stand side by side, the temporary folder, the backup
// folder and the undo file have one place for both. `name` is a file or a folder of a folder run.
void TComponentReplacer::RefuseCaseTwin(const std::string& name) {
  if (!FCheckedNames.insert(name).second) return;
  const size_t parent = name.rfind('\\');
  if (parent != std::string::npos) RefuseCaseTwin(name.substr(0, parent));
  const auto [place, isNew] = FNames.try_emplace(win::UpperFileName(name), name);
  if (isNew || IsSameFile(place->second, name)) return;
  throw ETwinFiles(rtl::Format("\"%s\" and \"%s\" differ in case alone and cannot be converted in one run.",
                               {place->second, name}),
                   place->second, name);
}

// The folders of a run are made once each, however many files come into them.
void TComponentReplacer::NeedFolder(const std::string& folder) {
  if (!FFolders.contains(folder) && ForceFolders(folder)) FFolders.insert(folder);
}

void TComponentReplacer::BackupFile(const std::string& fileName, const std::string& relPath, TTeam& team) {
  std::string backupName;
  if (FOptions.Dest == sdFolder) {
    NeedFolder(JoinPath(FOptions.BackupDir, rtl::ExtractFileDir(relPath)));
    backupName = BackupFileName(JoinPath(FOptions.BackupDir, relPath));
  } else {
    backupName = JoinPath(FOptions.BackupDir, rtl::ExtractFileName(BackupFileName(fileName)));
  }
  const bool isNamedAgain = !FUndoList.Values(fileName).empty();
  FUndoList.SetValue(fileName, backupName);
  if (isNamedAgain) return;  // by a second unit; the backup is made, or being made
  TBackup& backup = FBackups.emplace_back(TBackup{fileName});
  team.Add([&backup, backupName] {
    backup.Failed = !CopyBackup(backup.FileName, backupName);
    if (backup.Failed) backup.Error = win::GetLastError();
  });
  team.CatchUp(kMostBackupsAhead);
}

void TComponentReplacer::FinishBackups(TTeam& team) {
  team.Finish();
  for (const TBackup& backup : FBackups) {
    if (!backup.Failed) continue;
    Warn(rtl::Format("No backup of \"%s\" could be made. %s",
                     {backup.FileName, win::SysErrorMessage(backup.Error)}));
  }
}

bool TComponentReplacer::ReplaceOriginals(TTeam& team, const std::string& tempDir) {
  if (FChangedFiles > 0) {
    FLog.WriteLine(SReplacingOriginals);
    if (!win::FileSystem().FlushWritten()) {
      throw rtl::EWriteError(rtl::Format("Cannot write the changed files to the disk. %s", {LastReason()}));
    }
  }
  TCopyFailures failures;
  if (FOptions.Dest == sdFolder) {
    failures = CopyFolder(tempDir, FOptions.Directory, team);
  } else {
    failures = CopyFiles(tempDir, FUnits, team);
  }
  for (const auto& [fileName, error] : failures) {
    Warn(rtl::Format("\"%s\" could not be replaced. %s", {fileName, win::SysErrorMessage(error)}));
  }
  return failures.empty();
}

// A run that changed nothing leaves the way back from an earlier one.
void TComponentReplacer::WriteUndoFile() {
  const std::string undoName = JoinPath(FOptions.BackupDir, SUndoFileName);
  try {
    if (FUndoList.Count() > 0 || !rtl::FileExists(undoName)) FUndoList.SaveToFile(undoName);
  } catch (const rtl::EStreamError&) {
    if (FChangedFiles > 0)
      Warn(rtl::Format(
          "The files are replaced, and their backups stand in \"%s\", but no undo file lists them.",
          {FOptions.BackupDir}));
    throw;
  }
  FLog.WriteLine(rtl::Format(SBackupFile, {undoName}));
  for (int i = 0; i < FUndoList.Count(); ++i) {
    const std::string& line = FUndoList[i];
    if (line.find('=') == line.rfind('=') && line.find_first_of("\r\n") == std::string::npos) continue;
    Warn(rtl::Format(
        "The undo file cannot restore files while it lists a name with \"=\" or a line end in it: %s",
        {line}));
    break;
  }
}

bool TComponentReplacer::Restore(std::string_view undoFile) {
  TRestorePlan plan;
  plan.Add(undoFile);
  const int count = static_cast<int>(plan.Lines().size());
  return plan.Execute(
      [&](int done, const TRestoreLine& line) {
        if (OnProgress) OnProgress({done, count, line.Original});
      },
      OnWarning);
}

}  // namespace mig
