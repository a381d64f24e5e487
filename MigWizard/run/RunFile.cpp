// Processes one file of a run: logs it, writes the changed version, and adds the backup of the original.
#include <exception>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Run.h"
#include "MigWizard/run/RunErrors.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

// Returns True if `error`, the code of a failed look-up, means that the file does not exist.
bool MeansMissing(uint32_t error) {
  return error == win::ERROR_FILE_NOT_FOUND || error == win::ERROR_PATH_NOT_FOUND ||
         error == win::ERROR_INVALID_NAME || error == win::ERROR_DIRECTORY ||
         error == win::ERROR_FILENAME_EXCED_RANGE;
}

}  // namespace

void TRun::ProcessEntry(const std::string& fileName, TFilesAhead& files, const std::string& tempDir) {
  std::string relPath;
  if (FOptions.Dest == sdFolder) {
    FTwins.AddFullName(rtl::ExtractFileDir(fileName));
    relPath = rtl::ExtractRelativePath(JoinPath(FOptions.Directory, ""), fileName);
    if (!FIsPreview) FTempFolders.Need(JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  } else {
    FTwins.AddBareName(fileName);
  }
  const int changedBefore = FChangedFiles;
  ProcessFile(fileName, files, JoinPath(tempDir, rtl::ExtractFileDir(relPath)));
  if (FChangedFiles == changedBefore || FIsPreview) return;
  FChanged.Add(fileName, files.Version());
  if (FOptions.MakeBackup) FBackups.Add(fileName, relPath, files.Version());
}

void TRun::ProcessFile(const std::string& fileName, TFilesAhead& files, const std::string& targetDir) {
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
  if (const auto unread = FUnreadForms.find(fileName); unread != FUnreadForms.end())
    return LeaveOut(fileName, unread->second);
  try {
    NamingFile(fileName, [&] {
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

void TRun::ProcessUnit(const TFileConversion& unit, const std::string& sourceFile,
                       const std::string& targetFile) {
  if (unit.Failure) std::rethrow_exception(unit.Failure);
  for (const std::string& form : unit.FormFiles) AddForm(form);
  bool isSkipped = false;
  if (FOptions.Policy.Strict && unit.IsChanged && unit.NamesNewUnits) {
    isSkipped = FOptions.Policy.SkipConverted;
    // The finding second-conversion says the same.
    if (isSkipped || !unit.Findings)
      FHooks.Warn(rtl::Format("\"%s\" names the new units already. Was it converted before?%s",
                              {sourceFile, isSkipped ? " It was left as it is." : ""}));
  }
  if (unit.IsChanged && !isSkipped) WriteChanged(unit, sourceFile, targetFile);
  LogChanges(isSkipped ? 0 : unit.Changes);
}

void TRun::ProcessForm(const TFileConversion& form, const std::string& sourceFile,
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

void TRun::AddForm(const std::string& form) {
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

void TRun::WriteChanged(const TFileConversion& file, const std::string& sourceFile,
                        const std::string& targetFile) {
  if (FOptions.Dest == sdFolder) FTwins.AddFullName(sourceFile);
  if (FOptions.Policy.Strict && FOptions.MakeBackup && !CanBeListed(sourceFile, FOptions.BackupDir))
    throw rtl::Exception("The undo file cannot list a name with \"=\" or a line end in it.");
  if (file.WriteFailure) std::rethrow_exception(file.WriteFailure);
  ++FChangedFiles;
  if (FIsPreview) return;
  rtl::TFileStream target(targetFile, rtl::fmCreate);
  target.Write(file.Mark);
  target.Write(file.Bytes);
}

void TRun::LogChanges(int changes) {
  FLog.WriteLine(changes == 0 ? std::string(SNoChanges) : std::to_string(changes) + SChanges);
}

void TRun::LeaveOut(const std::string& name, const std::string& message) {
  FLeftOut.push_back({name, message});
  FLog.WriteLine(message);
  FHooks.Warn(message);
}

}  // namespace mig
