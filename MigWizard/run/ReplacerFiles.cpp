// What a run does with one file that was read and converted: tell of it, and write the changed version.
#include <exception>

#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/UnitNames.h"
#include "MigWizard/run/FilesAhead.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Replacer.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

// Adds the file's name to whatever goes wrong with its contents. The exceptions of streams name their file
// already.
template <typename TAction>
void NamingFile(const std::string& fileName, TAction action) {
  try {
    action();
  } catch (const rtl::EAbort&) {
    throw;
  } catch (const rtl::EStreamError&) {
    throw;
  } catch (const ETwinFiles&) {
    throw;
  } catch (const rtl::Exception& error) {
    throw EFileConversion(fileName, error.what());
  }
}

}  // namespace

void TComponentReplacer::ProcessFile(const std::string& fileName, TFilesAhead& files,
                                     const std::string& targetDir) {
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

void TComponentReplacer::ProcessUnit(const TFileConversion& unit, const std::string& sourceFile,
                                     const std::string& targetFile) {
  if (unit.Failure) std::rethrow_exception(unit.Failure);
  for (const std::string& form : unit.FormFiles) {
    if (rtl::FileExists(form) && !IsExcluded(form)) FUnits.Add(form);
  }
  if (unit.IsChanged) WriteChanged(unit, sourceFile, targetFile);
  LogChanges(unit.Changes);
}

void TComponentReplacer::ProcessForm(const TFileConversion& form, const std::string& sourceFile,
                                     const std::string& targetFile) {
  if (form.TrailingBytes > 0) {
    Warn(rtl::Format("%s: %d bytes behind the form's data are not part of it.",
                     {sourceFile, static_cast<int64_t>(form.TrailingBytes)}));
  }
  if (form.Failure) std::rethrow_exception(form.Failure);
  LogChanges(form.Changes);
  if (form.EndsAtNul)
    Warn(rtl::Format("%s: what stands behind a NUL character is not part of the form.", {sourceFile}));
  if (form.IsChanged) WriteChanged(form, sourceFile, targetFile);
}

void TComponentReplacer::WriteChanged(const TFileConversion& file, const std::string& sourceFile,
                                      const std::string& targetFile) {
  RefuseCaseTwin(sourceFile);
  rtl::TFileStream target(targetFile, rtl::fmCreate);
  if (file.WriteFailure) std::rethrow_exception(file.WriteFailure);
  target.Write(file.Mark);
  target.Write(file.Bytes);
  ++FChangedFiles;
}

void TComponentReplacer::LogChanges(int changes) {
  FLog.WriteLine(changes == 0 ? std::string(SNoChanges) : std::to_string(changes) + SChanges);
}

void TComponentReplacer::CollectDatabaseNames(const std::string& fileName) {
  rtl::TFileStream file(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
  NamingFile(fileName, [&] {
    const TFormFile form = ReadFormFile(file);
    const std::string_view text = form.Text;
    FindDatabaseNames(text.substr(0, text.find('\0')), *form.Encoding,
                      [&](std::string_view alias, std::string_view component) {
                        FDatabases.SetValue(AliasKey(alias, *form.Encoding), component);
                      });
  });
}

}  // namespace mig
