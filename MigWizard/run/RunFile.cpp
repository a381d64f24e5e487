// What a run does with one file that was read and converted: log it, and write the changed version.
#include <exception>

#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Run.h"
#include "MigWizard/run/RunErrors.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {

void TRun::ProcessFile(const std::string& fileName, TFilesAhead& files, const std::string& targetDir) {
  FLog.WriteLine(rtl::Format(SProcessingFile, {fileName}));
  const TFileConversion& conversion = files.Take();
  const std::string target = JoinPath(targetDir, rtl::ExtractFileName(fileName));
  const int changedBefore = FChangedFiles;
  NamingFile(fileName, [&] {
    if (IsUnitSource(fileName)) {
      ProcessUnit(conversion, fileName, target);
    } else {
      ProcessForm(conversion, fileName, target);
    }
  });
  if (FChangedFiles > changedBefore) (void)win::FileSystem().CopyPermissions(fileName, target);
}

void TRun::ProcessUnit(const TFileConversion& unit, const std::string& sourceFile,
                       const std::string& targetFile) {
  if (unit.Failure) std::rethrow_exception(unit.Failure);
  for (const std::string& form : unit.FormFiles) {
    if (rtl::FileExists(form) && !FHooks.IsExcluded(form)) FUnits.Add(form);
  }
  if (unit.IsChanged) WriteChanged(unit, sourceFile, targetFile);
  LogChanges(unit.Changes);
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

void TRun::WriteChanged(const TFileConversion& file, const std::string& sourceFile,
                        const std::string& targetFile) {
  FTwins.AddFullName(sourceFile);
  rtl::TFileStream target(targetFile, rtl::fmCreate);
  if (file.WriteFailure) std::rethrow_exception(file.WriteFailure);
  target.Write(file.Mark);
  target.Write(file.Bytes);
  ++FChangedFiles;
}

void TRun::LogChanges(int changes) {
  FLog.WriteLine(changes == 0 ? std::string(SNoChanges) : std::to_string(changes) + SChanges);
}

}  // namespace mig
