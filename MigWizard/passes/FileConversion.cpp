#include "MigWizard/passes/FileConversion.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "MigWizard/passes/ComponentNames.h"
#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/TextFile.h"
#include "MigWizard/passes/UnitNames.h"
#include "rtl/text/Streams.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

// The bytes of a changed form behind its mark. A text form's are there already; of a binary one the text is
// not kept beside them.
std::string FileBytes(rtl::TMemoryStream& output, const TFormFile& form, size_t sizeBefore) {
  if (!form.IsBinary) return output.TakeBytes();
  rtl::TMemoryStream file;
  file.Reserve(sizeBefore + sizeBefore / 8);
  WriteFormFile(file, output.TakeBytes(), form);
  return file.TakeBytes();
}

}  // namespace

TFileConverter::TFileConverter(const TClassMap& classes, std::string_view oldUnit, std::string_view newUnits,
                               std::unique_ptr<TFormParser> formParser)
    : FUnitRules{classes, oldUnit, newUnits,
                 [this](std::string_view oldClass, std::string_view newClass) {
                   return OnGetReplacement ? OnGetReplacement(oldClass, newClass) : std::string(newClass);
                 }},
      FClasses(classes),
      FFormParser(std::move(formParser)) {
  FOldUnit.Add(oldUnit);
  FFormParser->OnGetPropValue = [this](std::string_view, std::string_view value) {
    return DatabaseReference(value);
  };
}

TFileConversion TFileConverter::Convert(const std::string& fileName, std::string bytes) {
  TFileConversion result;
  try {
    if (IsUnitSource(fileName)) {
      ConvertUnitFile(fileName, std::move(bytes), result);
    } else {
      ConvertFormFile(std::move(bytes), result);
    }
  } catch (...) {
    result.Failure = std::current_exception();
  }
  return result;
}

// Returns the reference in the encoding of the form, or an empty string if there is none. The parser may ask
// several times for one property.
std::string TFileConverter::DatabaseReference(std::string_view alias) {
  if (!OnGetDatabase) return {};
  const std::string name = OnGetDatabase(alias, *FFormEncoding);
  if (std::optional<std::string> reference = NameForForm(name, *FFormEncoding)) return *std::move(reference);
  std::string shown = win::IsValidUtf8(name) ? name : win::SourceToUtf8(name);
  if (std::find(FUnwritableNames.begin(), FUnwritableNames.end(), shown) == FUnwritableNames.end())
    FUnwritableNames.push_back(std::move(shown));
  return {};
}

// Whether the pass over a unit can change or find anything. Told from the bytes alone.
bool TFileConverter::MayMatter(std::string_view unitText) const {
  return unitText.find("{$R") != std::string_view::npos || unitText.find("{$r") != std::string_view::npos ||
         FClasses.OldClasses().FindAny(unitText) || FOldUnit.FindAny(unitText);
}

void TFileConverter::ConvertUnitFile(const std::string& fileName, std::string bytes,
                                     TFileConversion& result) const {
  const TTextFile unit = DecodeTextFile(std::move(bytes));
  if (!MayMatter(unit.Text)) return;
  const TUnitResult converted = ConvertUnit(unit.Text, *unit.Encoding, FUnitRules);
  result.Changes = converted.Changes;
  for (const std::string_view directive : converted.ResourceDirectives) {
    std::string form = FormFileOfDirective(directive, fileName, *unit.Encoding);
    if (!form.empty()) result.FormFiles.push_back(std::move(form));
  }
  if (converted.Edits.Empty()) return;
  result.IsChanged = true;
  result.Mark = unit.Encoding->WrittenMark();
  result.Bytes = converted.Edits.Apply(unit.Text);
  if (!unit.Encoding->IsIdentity()) result.Bytes = unit.Encoding->GetBytes(result.Bytes);
}

void TFileConverter::ConvertFormFile(std::string bytes, TFileConversion& result) {
  const size_t size = bytes.size();
  TFormFile form = DecodeFormFile(std::move(bytes));
  result.TrailingBytes = form.RCData.TrailingBytes;
  const std::string_view text = std::string_view(form.Text).substr(0, form.Text.find('\0'));
  if (!FClasses.OldClasses().FindAny(text)) return;
  FFormEncoding = form.Encoding;
  FUnwritableNames.clear();
  rtl::TMemoryStream output;
  result.Changes = ConvertForm(text, *form.Encoding, FClasses, *FFormParser, output);
  result.UnwritableNames = std::move(FUnwritableNames);
  if (result.Changes == 0) return;
  result.IsChanged = true;
  result.EndsAtNul = text.size() < form.Text.size();
  std::string().swap(form.Text);  // gives its memory back, as an assignment would not
  try {
    if (!form.IsBinary) result.Mark = form.Encoding->WrittenMark();
    result.Bytes = FileBytes(output, form, size);
  } catch (...) {
    result.WriteFailure = std::current_exception();
  }
}

}  // namespace mig
