#include "MigWizard/run/Run.h"

#include <limits>

#include "MigWizard/run/OtherForms.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/RunErrors.h"
#include "MigWizard/run/UnitList.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Streams.h"

namespace mig {

TRun::TRun(const TRunContext& context)
    : FOptions(context.Options),
      FHooks(context.Hooks),
      FLock(context.Lock),
      FLog(context.Log),
      FConverter(context.Converter),
      FOtherConverter(context.OtherConverter),
      FLeftOut(context.LeftOut),
      FSelection(context.Selection),
      FPlan(context.Plan),
      FBackups(FOptions, FHooks, FQueue) {
  for (TFileConverter* const converter : {&FConverter, &FOtherConverter}) {
    converter->OnGetDatabase = [this](std::string_view alias, const qrl::TEncoding& encoding) {
      return FDatabases.Find(alias, encoding);
    };
    if (FSelection != nullptr)
      converter->OnGetSelection = [this](const std::string& fileName) { return FSelection->Find(fileName); };
    converter->ListEdits(FPlan != nullptr);
    converter->SkipConverted(FOptions.Policy.Strict && FOptions.Policy.SkipConverted);
  }
}

TRun::~TRun() {
  FQueue.Cancel();
  for (TFileConverter* const converter : {&FConverter, &FOtherConverter}) {
    converter->OnGetDatabase = nullptr;
    converter->OnGetSelection = nullptr;
    converter->ListEdits(false);
    converter->SkipConverted(false);
  }
}

bool TRun::Execute() {
  FLog.WriteLine(SInitUnitList);
  InitUnitList(FOptions, FHooks, FUnits, FLeftOut);
  try {
    return ConvertAndReplace();
  } catch (...) {
    // The journal refers to the staged backups.
    if (!FHasJournal) FBackups.DeleteStaged();
    throw;
  }
}

bool TRun::ConvertAndReplace() {
  if (FOptions.MakeBackup) PrepareBackupFolder();
  FLog.WriteLine(SAllocTempFolder);
  const TTempFolder temp(FOptions, FHooks, FQueue);
  Walk(temp.Path());
  const bool succeeded = ReplaceOriginals(temp.Path());
  FLog.WriteLine(SRemoveTempFolder);
  return succeeded;
}

void TRun::PrepareBackupFolder() {
  FLog.WriteLine(SCreateBackupFolder);
  CreateBackupFolder(FOptions, FHooks);
  FLock.LockBackupFolder();
  FBackups.Prepare();
}

void TRun::Preview() {
  FIsPreview = true;
  InitUnitList(FOptions, FHooks, FUnits, FLeftOut);
  Walk({});
}

void TRun::ReportOtherForms() {
  for (const std::string& form : FindOtherForms(FOptions, FHooks, FUnits)) {
    std::string bytes;
    try {
      rtl::TFileStream file(form, rtl::fmOpenRead | rtl::fmShareDenyNone);
      bytes = file.ReadToEnd();
    } catch (const rtl::EStreamError&) {
      continue;  // not part of the run
    }
    const TFileConversion conversion = FConverter.Convert(form, std::move(bytes));
    const size_t objects = conversion.Findings ? conversion.Findings->MappedObjects : 0;
    if (objects > 0) FHooks.OnOtherForm(form, objects);
  }
}

void TRun::Walk(const std::string& tempDir) {
  try {
    WalkList(tempDir);
  } catch (...) {
    // The files before the failed one still get their backups.
    try {
      FBackups.Wait();
    } catch (...) {  // the caller gets the exception that ended the walk
    }
    throw;
  }
  FBackups.Wait();
  if (FSelection != nullptr) FSelection->RequireUnchanged();
  if (FHooks.OnOtherForm) ReportOtherForms();
  ReportProgress(FUnits.Count(), {});
}

// Units come first; each appends its form files to the end of the list. In a project run all forms are read
// for their aliases before the first of them is converted.
void TRun::WalkList(const std::string& tempDir) {
  const int firstForm = FUnits.Count();
  FFirstForm = firstForm;
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
    NamingFile(fileName, [&] { ProcessEntry(fileName, files, tempDir); });
  }
}

// A form that cannot be read here is left out, even if it can be read later: the other forms do not know its databases.
void TRun::CollectDatabaseNames(int firstForm) {
  const TRunPolicy& policy = FOptions.Policy;
  for (int i = firstForm; i < FUnits.Count(); ++i) {
    FHooks.Report({firstForm, FUnits.Count(), FUnits[i], TRunPhase::Reading, i - firstForm,
                   FUnits.Count() - firstForm});
    try {
      FDatabases.Collect(FUnits[i]);
    } catch (const rtl::EStreamError& error) {
      if (!policy.Strict) throw;
      FUnreadForms.emplace(FUnits[i], error.what());
    } catch (const EFileConversion& error) {
      if (!policy.Strict || !policy.KeepGoing) throw;
      FUnreadForms.emplace(FUnits[i], error.what());
    }
  }
}

void TRun::ReportProgress(int done, std::string_view fileName) const {
  const int count = FUnits.Count();
  if (done < FFirstForm) {
    FHooks.Report({done, count, fileName, TRunPhase::Units, done, FFirstForm});
  } else {
    FHooks.Report({done, count, fileName, TRunPhase::Forms, done - FFirstForm, count - FFirstForm});
  }
}

}  // namespace mig
