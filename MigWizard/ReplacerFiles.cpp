// What a run does with one file: read it, convert its text, write the changed version.
#include "MigWizard/FormPass.h"
#include "MigWizard/RExpertRes.h"
#include "MigWizard/Replacer.h"
#include "MigWizard/TextFile.h"
#include "MigWizard/UnitNames.h"
#include "MigWizard/UnitPass.h"
#include "rtl/Streams.h"
#include "rtl/SysUtils.h"
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

void TComponentReplacer::ProcessFile(const std::string& fileName, const std::string& targetDir) {
  FLog.WriteLine(rtl::Format(SProcessingFile, {fileName}));
  const std::string target = JoinPath(targetDir, rtl::ExtractFileName(fileName));
  rtl::TFileStream file(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
  const int changedBefore = FChangedFiles;
  NamingFile(fileName, [&] {
    if (IsUnitSource(fileName)) {
      const TTextFile unit = ReadTextFile(file);
      ProcessUnit(unit.Text, fileName, *unit.Encoding, target);
    } else {
      const TFormFile form = ReadFormFile(file);
      if (form.RCData.TrailingBytes > 0) {
        Warn(rtl::Format("%s: %d bytes behind the form's data are not part of it.",
                         {fileName, static_cast<int64_t>(form.RCData.TrailingBytes)}));
      }
      const std::string_view text = form.Text;
      ProcessForm(text.substr(0, text.find('\0')), fileName, form, target);
    }
  });
  if (FChangedFiles > changedBefore) (void)win::FileSystem().CopyPermissions(fileName, target);
}

void TComponentReplacer::ProcessUnit(std::string_view text, const std::string& sourceFile,
                                     const qrl::TEncoding& encoding, const std::string& targetFile) {
  const TUnitRules rules{FClasses, FOldUnit, FNewUnits,
                         [this](std::string_view oldClass, std::string_view newClass) {
                           return GetReplacement(oldClass, newClass);
                         }};
  const TUnitResult result = ConvertUnit(text, encoding, rules);
  for (const std::string_view directive : result.ResourceDirectives) {
    const std::string form = FormFileOfDirective(directive, sourceFile, encoding);
    if (!form.empty() && rtl::FileExists(form) && !IsExcluded(form)) FUnits.Add(form);
  }
  if (!result.Edits.Empty()) {
    RefuseCaseTwin(sourceFile);
    rtl::TFileStream target(targetFile, rtl::fmCreate);
    result.Edits.WriteTo(target, text, encoding);
    ++FChangedFiles;
  }
  LogChanges(result.Changes);
}

void TComponentReplacer::ProcessForm(std::string_view text, const std::string& sourceFile,
                                     const TFormFile& form, const std::string& targetFile) {
  rtl::TMemoryStream output;
  FFormEncoding = form.Encoding;
  const int changes = ConvertForm(text, *form.Encoding, FClasses, *FFormParser, output);
  LogChanges(changes);
  if (changes == 0) return;
  if (text.size() < form.Text.size())
    Warn(rtl::Format("%s: what stands behind a NUL character is not part of the form.", {sourceFile}));
  RefuseCaseTwin(sourceFile);
  rtl::TFileStream target(targetFile, rtl::fmCreate);
  WriteFormFile(target, output.Bytes(), form);
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
