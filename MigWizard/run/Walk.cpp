#include "MigWizard/run/Walk.h"

#include <exception>
#include <limits>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/OtherForms.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/RunErrors.h"
#include "MigWizard/run/UnitList.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

// Returns True if `error`, the code of a failed look-up, means that the file does not exist.
bool MeansMissing(uint32_t error) {
  return error == win::ERROR_FILE_NOT_FOUND || error == win::ERROR_PATH_NOT_FOUND ||
         error == win::ERROR_INVALID_NAME || error == win::ERROR_DIRECTORY ||
         error == win::ERROR_FILENAME_EXCED_RANGE;
}

}  // namespace

TWalk::TWalk(const TRunContext& context, TChangedFiles& changed, TBackups& backups, TWorkQueue& queue)
    : FOptions(context.Options),
      FHooks(context.Hooks),
      FLog(context.Log),
      FConverter(context.Converter),
      FOtherConverter(context.OtherConverter),
      FLeftOut(context.LeftOut),
      FSelection(context.Selection),
      FPlan(context.Plan),
      FChanged(changed),
      FBackups(backups),
      FQueue(queue) {
  for (TFileConverter* const converter : {&FConverter, &FOtherConverter}) {
    converter->OnGetDatabase = [this](std::string_view alias, const qrl::TEncoding& encoding) {
      return FDatabases.Find(alias, encoding);
    };
    converter->OnGetInheritedDatabase = [this](std::string_view alias, const qrl::TEncoding& encoding) {
      return FDatabases.FindInherited(alias, encoding);
    };
    converter->OnReadForm = [this](const std::string& fileName) { return ReadEarly(fileName); };
    if (FSelection != nullptr)
      converter->OnGetSelection = [this](const std::string& fileName) { return FSelection->Find(fileName); };
    converter->ListEdits(FPlan != nullptr);
    converter->SkipConverted(FOptions.Policy.Strict && FOptions.Policy.SkipConverted);
  }
}

TWalk::~TWalk() {
  for (TFileConverter* const converter : {&FConverter, &FOtherConverter}) {
    converter->OnGetDatabase = nullptr;
    converter->OnGetInheritedDatabase = nullptr;
    converter->OnReadForm = nullptr;
    converter->OnGetSelection = nullptr;
    converter->ListEdits(false);
    converter->SkipConverted(false);
  }
}

void TWalk::FindUnits() {
  InitUnitList(FOptions, FHooks, FUnits, FLeftOut, FHooks.OnOtherForm ? &FListedForms : nullptr);
}

void TWalk::Preview() {
  FIsPreview = true;
  Execute({});
}

void TWalk::Execute(const std::string& tempDir) {
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
void TWalk::WalkList(const std::string& tempDir) {
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
    WithFileInErrors(fileName, [&] { ProcessEntry(fileName, files, tempDir); });
  }
}

// A form that cannot be read here is left out, even if it can be read later: the other forms do not know its
// databases.
void TWalk::CollectDatabaseNames(int firstForm) {
  const TRunPolicy& policy = FOptions.Policy;
  for (int i = firstForm; i < FUnits.Count(); ++i) {
    FHooks.Report({firstForm, FUnits.Count(), FUnits[i], TRunPhase::Reading, i - firstForm,
                   FUnits.Count() - firstForm});
    try {
      FDatabases.Collect(FUnits[i], ReadEarly(FUnits[i]), FConverter.ConvertsInherited());
    } catch (const rtl::EStreamError& error) {
      if (!policy.Strict) throw;
      FUnreadForms.emplace(FUnits[i], error.what());
    } catch (const EFileConversion& error) {
      if (!policy.Strict || !policy.KeepGoing) throw;
      FUnreadForms.emplace(FUnits[i], error.what());
    }
  }
}

void TWalk::ReportProgress(int done, std::string_view fileName) const {
  const int count = FUnits.Count();
  if (done < FFirstForm) {
    FHooks.Report({done, count, fileName, TRunPhase::Units, done, FFirstForm});
  } else {
    FHooks.Report({done, count, fileName, TRunPhase::Forms, done - FFirstForm, count - FFirstForm});
  }
}

void TWalk::ReportOtherForms() {
  for (const std::string& form : FindOtherForms(FOptions, FHooks, FUnits, FListedForms)) {
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

void TWalk::ProcessEntry(const std::string& fileName, TFilesAhead& files, const std::string& tempDir) {
  std::string relPath;
  if (FOptions.Dest == sdFolder) {
    FNameClashes.AddFullName(rtl::ExtractFileDir(fileName));
    relPath = rtl::ExtractRelativePath(JoinPath(FOptions.Directory, ""), fileName);
    if (!FIsPreview) FTempFolders.Ensure(JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  } else {
    FNameClashes.AddBareName(fileName);
  }
  const int changedBefore = FChangedFiles;
  ProcessFile(fileName, files, JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  if (FChangedFiles == changedBefore || FIsPreview) return;
  FChanged.Add(fileName, files.Version());
  if (FOptions.MakeBackup) FBackups.Add(fileName, relPath, files.Version());
}

void TWalk::ProcessFile(const std::string& fileName, TFilesAhead& files, const std::string& targetDir) {
  FLog.WriteLine(rtl::Format(SProcessingFile, {fileName}));
  const TRunPolicy& policy = FOptions.Policy;
  const std::string target = JoinPath(targetDir, rtl::ExtractFileName(fileName));
  const int changedBefore = FChangedFiles;
  const TFileConversion* conversion = nullptr;
  try {
    conversion = &files.Take();
  } catch (const rtl::EStreamError& error) {
    if (!policy.Strict) throw;
    return LeaveOut(fileName, error.what());
  }
  if (FSelection != nullptr) FSelection->RequireSame(fileName, files.Version());
  RequireSameAsEarly(fileName, files.Version());
  if (const auto unread = FUnreadForms.find(fileName); unread != FUnreadForms.end())
    return LeaveOut(fileName, unread->second);
  try {
    WithFileInErrors(fileName, [&] {
      if (IsUnitSource(fileName)) {
        ProcessUnit(*conversion, fileName, target);
      } else {
        ProcessForm(*conversion, fileName, target);
      }
    });
  } catch (const EFileConversion& error) {
    if (!policy.Strict || !policy.KeepGoing) throw;
    return LeaveOut(fileName, error.what());
  }
  const bool isChanged = FChangedFiles > changedBefore;
  // A strict run replaces contents only (ChangedFiles.h), so the permissions here do not matter.
  if (isChanged && !FIsPreview && !policy.Strict) (void)win::FileSystem().CopyPermissions(fileName, target);
  if (FPlan != nullptr) FPlan->Add(fileName, files.Version(), *conversion, isChanged);
  if (FHooks.OnConverted) FHooks.OnConverted(fileName, *conversion, isChanged);
}

// Called by both threads.
std::string TWalk::ReadEarly(const std::string& formFile) {
  rtl::TFileStream file(formFile, rtl::fmOpenRead | rtl::fmShareDenyNone);
  std::string bytes = file.ReadToEnd();
  if (!FOptions.Policy.Strict) return bytes;
  const TFileVersion version = VersionOf(file, bytes);
  const std::lock_guard lock(FVersionsLock);
  FEarlyVersions[win::UpperFileName(formFile)].push_back(version);
  return bytes;
}

void TWalk::RequireSameAsEarly(const std::string& formFile, const TFileVersion& version) {
  const std::lock_guard lock(FVersionsLock);
  const auto versions = FEarlyVersions.find(win::UpperFileName(formFile));
  if (versions == FEarlyVersions.end()) return;
  for (const TFileVersion& earlier : versions->second) {
    if (!IsSameVersion(formFile, earlier, version))
      throw EFileEdited(rtl::Format("\"%s\" was changed during the run. No file was replaced.", {formFile}));
  }
}

void TWalk::ProcessUnit(const TFileConversion& unit, const std::string& sourceFile,
                        const std::string& targetFile) {
  if (unit.Failure) std::rethrow_exception(unit.Failure);
  for (const std::string& form : unit.FormFiles) AddForm(form);
  bool isSkipped = false;
  if (FOptions.Policy.Strict && unit.IsChanged && unit.NamesNewUnits) {
    isSkipped = FOptions.Policy.SkipConverted;
    // The finding second-conversion says the same.
    if (isSkipped || !unit.Findings)
      FHooks.Warn(rtl::Format("\"%s\" already names the new units. Was it converted before?%s",
                              {sourceFile, isSkipped ? " It was left as it is." : ""}));
  }
  if (unit.IsChanged && !isSkipped) WriteChanged(unit, sourceFile, targetFile);
  LogChanges(isSkipped ? 0 : unit.Changes);
}

void TWalk::ProcessForm(const TFileConversion& form, const std::string& sourceFile,
                        const std::string& targetFile) {
  if (form.TrailingBytes > 0) {
    FHooks.Warn(rtl::Format("%s: %d bytes after the form's data are not part of it.",
                            {sourceFile, static_cast<int64_t>(form.TrailingBytes)}));
  }
  if (form.Failure) std::rethrow_exception(form.Failure);
  LogChanges(form.Changes);
  if (form.EndsAtNul)
    FHooks.Warn(rtl::Format("%s: the text after a NUL character is not part of the form.", {sourceFile}));
  for (const std::string& name : form.UnwritableNames) {
    FHooks.Warn(rtl::Format(
        "%s: the encoding of the form lacks characters of \"%s\", so nothing in it refers to that.",
        {sourceFile, name}));
  }
  if (form.IsChanged) WriteChanged(form, sourceFile, targetFile);
}

void TWalk::AddForm(const std::string& form) {
  const uint32_t attributes = win::FileSystem().GetFileAttributesA(form);
  if (attributes == win::INVALID_FILE_ATTRIBUTES) {
    const uint32_t error = win::GetLastError();
    if (FHooks.OnMissingForm && MeansMissing(error)) FHooks.OnMissingForm(form);
    if (FOptions.Policy.Strict && !MeansMissing(error) && !FHooks.IsExcluded(form))
      LeaveOut(form, rtl::Format("Cannot open file \"%s\". %s", {form, win::SysErrorMessage(error)}));
    return;
  }
  if ((attributes & win::FILE_ATTRIBUTE_DIRECTORY) == 0 && !FHooks.IsExcluded(form)) FUnits.Add(form);
}

void TWalk::WriteChanged(const TFileConversion& file, const std::string& sourceFile,
                         const std::string& targetFile) {
  if (FOptions.Dest == sdFolder) FNameClashes.AddFullName(sourceFile);
  if (FOptions.Policy.Strict && FOptions.MakeBackup && !CanBeListed(sourceFile, FOptions.BackupDir))
    throw rtl::Exception("The undo file cannot list a name with \"=\" or a line end in it.");
  if (file.WriteFailure) std::rethrow_exception(file.WriteFailure);
  ++FChangedFiles;
  if (FIsPreview) return;
  rtl::TFileStream target(targetFile, rtl::fmCreate);
  target.Write(file.Mark);
  target.Write(file.Bytes);
}

void TWalk::LogChanges(int changes) {
  FLog.WriteLine(changes == 0 ? std::string(SNoChanges) : std::to_string(changes) + SChanges);
}

void TWalk::LeaveOut(const std::string& name, const std::string& message) {
  FLeftOut.push_back({name, message});
  FLog.WriteLine(message);
  FHooks.Warn(message);
}

}  // namespace mig
