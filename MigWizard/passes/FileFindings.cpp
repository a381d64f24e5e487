#include "MigWizard/passes/FileFindings.h"

#include <algorithm>

#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/passes/FormFile.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

// Malformed UTF-8, as in damaged files, is replaced by U+FFFD.
void MakeUtf8(std::string& text, const qrl::TEncoding& encoding) {
  const auto isAscii = [](char c) { return static_cast<uint8_t>(c) < 0x80; };
  if (std::all_of(text.begin(), text.end(), isAscii)) return;
  if (encoding == qrl::TEncoding::Default()) {
    text = win::SourceToUtf8(text);
  } else if (!win::IsValidUtf8(text)) {
    for (char& c : text) c = isAscii(c) ? c : '?';
  }
}

void MakeUtf8(std::vector<TDeclaration>& list, const qrl::TEncoding& encoding) {
  for (TDeclaration& declaration : list) {
    MakeUtf8(declaration.Name, encoding);
    MakeUtf8(declaration.Type, encoding);
  }
}

// Returns True if the line of a finding of that rule is still in the file after the run.
bool KeepsLine(TRuleId rule) {
  return rule != TRuleId::DroppedProperty && rule != TRuleId::DroppedLoginEntry &&
         rule != TRuleId::LostConnection;
}

}  // namespace

void ConvertTexts(std::vector<TFinding>& findings, const qrl::TEncoding& encoding) {
  for (TFinding& finding : findings)
    for (std::string* const text :
         {&finding.Object, &finding.OldClass, &finding.NewClass, &finding.Subject, &finding.Value,
          &finding.Detail, &finding.Advice, &finding.Before, &finding.After})
      MakeUtf8(*text, encoding);
}

void PlaceFindings(std::vector<TFinding>& findings, const TTextPlaces& places,
                   const qrl::TEncoding& encoding) {
  for (TFinding& finding : findings) {
    const TTextPlace place = places.At(finding.Offset);
    finding.Line = place.Line;
    finding.Column = place.Column;
    if (finding.Before.empty()) {
      finding.Before = ShownValue({}, places.LineAt(finding.Offset));
      if (KeepsLine(finding.Rule) && finding.After.empty()) finding.After = finding.Before;
    }
  }
  ConvertTexts(findings, encoding);
}

const std::string& TPrintedFile::Text() {
  if (!FText.empty()) return FText;
  TRCData rcData;
  rtl::TBinaryTextOptions options;
  options.ForPeople = true;
  rtl::TBinaryInfo info;
  FText = rtl::ObjectBinaryToText(ReadFormHeader(FBytes, rcData), options, info);
  return FText;
}

void PlaceInPrintedForm(std::vector<TFinding>& findings, std::string_view text, TPrintedFile& file) {
  if (findings.empty()) return;
  const std::string& printed = file.Text();
  const qrl::TEncoding& encoding = qrl::TEncoding::Default();
  std::vector<size_t> offsets;
  offsets.reserve(findings.size());
  for (const TFinding& finding : findings) offsets.push_back(finding.Offset);
  const TPrintedForm onPaper(text, printed, encoding, offsets);
  for (size_t i = 0; i < findings.size(); ++i) findings[i].Offset = onPaper.Offsets()[i];
  PlaceFindings(findings, TTextPlaces(printed, encoding), encoding);
}

void ConvertNames(TUnitOutline& outline, const qrl::TEncoding& encoding) {
  MakeUtf8(outline.Name, encoding);
  for (std::string& unit : outline.UsedUnits) MakeUtf8(unit, encoding);
  MakeUtf8(outline.Names, encoding);
  for (TClassOutline& each : outline.Classes) {
    MakeUtf8(each.Name, encoding);
    MakeUtf8(each.Ancestor, encoding);
    MakeUtf8(each.Members, encoding);
  }
  for (TNameUse& use : outline.Uses) {
    for (std::string& name : use.Path) MakeUtf8(name, encoding);
    for (std::string* const text :
         {&use.Name, &use.Shown, &use.Owner, &use.Local.Name, &use.Local.Type, &use.Before, &use.After})
      MakeUtf8(*text, encoding);
  }
}

}  // namespace mig
