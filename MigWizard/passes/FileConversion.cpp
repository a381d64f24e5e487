#include "MigWizard/passes/FileConversion.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "MigWizard/passes/ComponentNames.h"
#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/passes/FormFindings.h"
#include "MigWizard/passes/FormSearch.h"
#include "MigWizard/passes/UnitFindings.h"
#include "MigWizard/passes/UnitMarks.h"
#include "MigWizard/passes/UnitNames.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Streams.h"
#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

// Returns the bytes of a changed form after its mark. For a text form they are `output`. For a binary form
// the text is released after its conversion.
std::string FileBytes(rtl::TMemoryStream& output, const TFormFile& form, size_t sizeBefore) {
  if (!form.IsBinary) return output.TakeBytes();
  rtl::TMemoryStream file;
  file.Reserve(sizeBefore + sizeBefore / 8);
  WriteFormFile(file, output.TakeBytes(), form);
  return file.TakeBytes();
}

std::string_view EncodingName(const qrl::TEncoding& encoding) {
  if (encoding == qrl::TEncoding::Default()) return "source code page";
  return encoding == qrl::TEncoding::UTF8() ? "UTF-8" : "UTF-16";
}

// Adds findings about a changed text file as a whole, placed at its beginning.
void AddTextFindings(std::string_view text, const qrl::TEncoding& encoding, const TTextPlaces& places,
                     bool writesLines, bool keepsMark, std::vector<TFinding>& findings) {
  const auto add = [&findings](TRuleId rule) -> TFinding& {
    TFinding finding;
    finding.Rule = rule;
    finding.Level = RuleOf(rule).Level;
    return *findings.insert(findings.begin(), std::move(finding));
  };
  const size_t otherLineEnds = writesLines ? places.OtherLineEnds() : 0;
  if (otherLineEnds > 0) add(TRuleId::MixedLineEnds).Value = std::to_string(otherLineEnds);
  if (encoding == qrl::TEncoding::UTF8() && !keepsMark) {
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<uint8_t>(c) < 0x80; });
    TFinding& finding = add(TRuleId::LostMark);
    if (isAscii) finding.Level = TLevel::Note;
  }
}

// Returns the mark of a changed file. A UTF-8 file loses its mark unless the completion keeps it.
std::string_view MarkOf(const qrl::TEncoding& encoding, const IFileCompletion* completion) {
  const bool isKept = completion != nullptr && completion->KeepsMarks() && encoding == qrl::TEncoding::UTF8();
  return isKept ? std::string_view("\xEF\xBB\xBF") : encoding.WrittenMark();
}

// Removes the findings that the completion has settled.
void RemoveSettled(std::vector<TFinding>& findings, const TCompletedUnit& completed) {
  std::erase_if(findings, [&completed](const TFinding& finding) {
    switch (finding.Rule) {
      case TRuleId::NoNewUnits:
      case TRuleId::DoubledUnits:
      case TRuleId::SecondConversion:
        return completed.SettlesUses;
      case TRuleId::TransactionLine:
        return completed.SettlesTransactions;
      case TRuleId::OldUnit:
        return std::find(completed.RemovedUnits.begin(), completed.RemovedUnits.end(), finding.Subject) !=
               completed.RemovedUnits.end();
      default:
        return false;
    }
  });
}

// Removes the edits that are left out. Returns True if no edit is left, so that the file stays as it is.
bool LeaveOutEdits(const TEditSelection& selection, TUnitResult& unit) {
  unit.LeftOut = unit.Edits.RemoveIf([&selection](size_t place) { return selection.LeavesOut(place); });
  unit.Changes = selection.LeavesOutAll() ? 0 : unit.Changes - static_cast<int>(unit.LeftOut.size());
  return selection.LeavesOutAll() || (!unit.LeftOut.empty() && unit.Edits.Empty());
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
      ConvertFormFile(fileName, std::move(bytes), result);
    }
  } catch (...) {
    result.Failure = std::current_exception();
  }
  return result;
}

void TFileConverter::CollectFindings(const TOldNames& names, TFindingDetail detail) {
  FOldNames = &names;
  FDetail = detail;
  FFormParser->KeepSources();
}

// Returns the reference in the encoding of the form, or an empty string if there is none. The parser may ask
// several times for the same property.
std::string TFileConverter::DatabaseReference(std::string_view alias) {
  if (!OnGetDatabase || !FRefersToDatabases) return {};
  const std::string name = OnGetDatabase(alias, *FFormEncoding);
  if (std::optional<std::string> reference = NameForForm(name, *FFormEncoding)) return *std::move(reference);
  std::string shown = win::IsValidUtf8(name) ? name : win::SourceToUtf8(name);
  if (std::find(FUnwritableNames.begin(), FUnwritableNames.end(), shown) == FUnwritableNames.end())
    FUnwritableNames.push_back(std::move(shown));
  FUnwritableAliases.emplace_back(alias);
  return {};
}

// Returns True if the unit pass can change or find anything. Decides from the bytes, without tokenising.
bool TFileConverter::MayMatter(std::string_view unitText) const {
  return unitText.find("{$R") != std::string_view::npos || unitText.find("{$r") != std::string_view::npos ||
         FClasses.OldClasses().FindAny(unitText) || FOldUnit.FindAny(unitText);
}

void TFileConverter::ConvertUnitFile(const std::string& fileName, std::string bytes,
                                     TFileConversion& result) {
  const TTextFile unit = DecodeTextFile(std::move(bytes));
  if (FOldNames == nullptr && FCompletion == nullptr && !MayMatter(unit.Text)) return;
  if (FOldNames != nullptr && !FUnitNames) FUnitNames = MakeUnitNames(FUnitRules, *FOldNames);
  TUnitResult converted =
      ConvertUnit(unit.Text, *unit.Encoding, FUnitRules, FUnitNames ? &*FUnitNames : nullptr);
  const TEditSelection* const selection = OnGetSelection ? OnGetSelection(fileName) : nullptr;
  const bool isLeftOut = selection != nullptr && LeaveOutEdits(*selection, converted);
  const IFileCompletion* const completion = isLeftOut ? nullptr : FCompletion;
  result.Changes = converted.Changes;
  std::vector<std::string_view> directives;
  for (const std::string_view directive : converted.ResourceDirectives) {
    std::string form = FormFileOfDirective(directive, fileName, *unit.Encoding);
    if (form.empty()) continue;
    result.FormFiles.push_back(std::move(form));
    directives.push_back(directive);
  }
  result.NamesNewUnits = converted.NamesNewUnits;
  result.IsChanged = !converted.Edits.Empty();
  if (FListsEdits) result.Edits = ListUnitEdits(unit.Text, *unit.Encoding, FClasses, converted.Edits);
  TCompletedUnit completed;
  if (completion != nullptr) {
    completed =
        completion->CompleteUnit({unit.Text, *unit.Encoding, FClasses, converted.Edits, result.FormFiles,
                                  [&](const TFormLook& look) { LookAtForms(result.FormFiles, look); }});
    const bool isChanged = completed.Text != unit.Text;
    if (isChanged && !result.IsChanged) result.Changes = 1;
    result.IsChanged = isChanged;
  }
  const bool isSkipped = FSkipsConverted && result.NamesNewUnits;
  if (FCompletion != nullptr && (isLeftOut || isSkipped)) FCompletion->OnUnitKept(result.FormFiles);
  if (FOldNames != nullptr)
    FindInUnitFile(unit, converted, directives, completion != nullptr ? &completed : nullptr, result);
  if (!result.IsChanged) return;
  result.Mark = MarkOf(*unit.Encoding, FCompletion);
  result.Bytes = completion != nullptr ? std::move(completed.Text) : converted.Edits.Apply(unit.Text);
  if (!unit.Encoding->IsIdentity()) result.Bytes = unit.Encoding->GetBytes(result.Bytes);
}

void TFileConverter::FindInUnitFile(const TTextFile& unit, const TUnitResult& converted,
                                    const std::vector<std::string_view>& directives,
                                    const TCompletedUnit* completed, TFileConversion& result) {
  const TTextPlaces places(unit.Text, *unit.Encoding);
  TUnitFindings found = FindInUnit({unit.Text, *unit.Encoding, FUnitRules, converted, *FOldNames, *FUnitNames,
                                    completed, FReadsInterfaces, FDetail},
                                   places);
  FReadsInterfaces = FReadsInterfaces || !found.Outline.Uses.empty();
  const std::vector<TTextEdits::TEdit>& edits = converted.Edits.Edits();
  if (completed != nullptr) RemoveSettled(found.Findings, *completed);
  const bool keepsMark = FCompletion != nullptr && FCompletion->KeepsMarks();
  const bool keepsLineEnds = FCompletion != nullptr && FCompletion->KeepsLineEnds();
  const bool writesLines =
      !keepsLineEnds && std::any_of(edits.begin(), edits.end(), [](const TTextEdits::TEdit& edit) {
        return edit.Replacement.find('\n') != std::string::npos;
      });
  if (result.IsChanged)
    AddTextFindings(unit.Text, *unit.Encoding, places, writesLines, keepsMark, found.Findings);
  if (FDetail == TFindingDetail::Whole) PlaceFindings(found.Findings, places, *unit.Encoding);
  ConvertNames(found.Outline, *unit.Encoding);
  auto findings = std::make_shared<TFileFindings>();
  findings->Findings = std::move(found.Findings);
  findings->Outline = std::move(found.Outline);
  findings->Interface = unit.Text.substr(0, found.UnreadInterface);
  findings->InterfaceEncoding = unit.Encoding;
  for (const std::string_view directive : directives) {
    const auto offset = static_cast<size_t>(directive.data() - unit.Text.data());
    findings->FormPlaces.push_back(FDetail == TFindingDetail::Whole ? places.At(offset) : TTextPlace());
  }
  findings->Encoding = EncodingName(*unit.Encoding);
  result.Findings = std::move(findings);
}

// Returns the classes of which a form has to name one if anything is to be said about it.
const TFormClasses& TFileConverter::ReportedClasses() {
  if (FReportedClasses) return *FReportedClasses;
  TFormClasses& reported = FReportedClasses.emplace();
  reported.Words = FClasses.OldClasses();
  const rtl::TStringList& mapped = FClasses.MappedClasses();
  for (int i = 0; i < mapped.Count(); ++i) reported.Names.Add(mapped[i], 1);
  FOldNames->ForEach([&](TOldNames::TKind kind, const std::string& name) {
    if (kind != TOldNames::Class || FClasses.Find(name) != nullptr) return;
    reported.Words.Add(name);
    reported.Names.Add(name, 1);
  });
  return reported;
}

// Returns the selected edits of the form, and sets those that it leaves out.
const TEditSelection* TFileConverter::SelectIn(TFormToComplete& form) const {
  const TEditSelection* const selection =
      OnGetSelection ? OnGetSelection(std::string(form.FileName)) : nullptr;
  if (selection != nullptr)
    form.LeavesOut = [selection](size_t place) { return selection->LeavesOut(place); };
  return selection;
}

void TFileConverter::LookAtForms(const std::vector<std::string>& formFiles, const TFormLook& look) {
  if (!OnReadForm) return;
  FRefersToDatabases = false;
  for (const std::string& fileName : formFiles) {
    try {
      const TFormFile form = DecodeFormFile(OnReadForm(fileName));
      const std::string_view text = std::string_view(form.Text).substr(0, form.Text.find('\0'));
      TFormToComplete toLookAt = {fileName, text, *form.Encoding, FClasses, {}, nullptr};
      (void)SelectIn(toLookAt);
      rtl::TMemoryStream output;
      if (ConvertForm(text, *form.Encoding, FClasses, *FFormParser, output, nullptr, &toLookAt.Edits,
                      toLookAt.LeavesOut) == 0)
        toLookAt.Edits.clear();
      look(toLookAt, *FFormParser);
    } catch (const rtl::EOutOfMemory&) {
      throw;
    } catch (const rtl::Exception&) {  // is reported when the form is converted
    }
  }
}

void TFileConverter::ConvertFormFile(const std::string& fileName, std::string bytes,
                                     TFileConversion& result) {
  const size_t size = bytes.size();
  const bool needsOutline = FOldNames != nullptr || FListsEdits;
  const bool needsPlaces = FListsEdits || (FOldNames != nullptr && FDetail == TFindingDetail::Whole);
  TPrintedFile printed(needsPlaces && IsBinaryForm(bytes) ? bytes : std::string());
  TFormFile form = DecodeFormFile(std::move(bytes));
  result.TrailingBytes = form.RCData.TrailingBytes;
  const std::string_view text = std::string_view(form.Text).substr(0, form.Text.find('\0'));
  const TFormClasses* const reported = FOldNames != nullptr ? &ReportedClasses() : nullptr;
  if (!(reported != nullptr ? reported->Words : FClasses.OldClasses()).FindAny(text)) return;
  FFormEncoding = form.Encoding;
  FRefersToDatabases = true;
  FUnwritableNames.clear();
  FUnwritableAliases.clear();
  rtl::TMemoryStream output;
  std::vector<TObjectConversion> conversions;
  TFormOutline outline(needsPlaces || reported == nullptr ? nullptr : &reported->Names);
  std::vector<TObjectConversion>* const conversionList = FOldNames != nullptr ? &conversions : nullptr;
  TFormToComplete toComplete = {fileName, text, *form.Encoding, FClasses, {}, conversionList};
  const TEditSelection* const selection = SelectIn(toComplete);
  const bool isLeftOut = selection != nullptr && selection->LeavesOutAll();
  const IFileCompletion* const completion = isLeftOut ? nullptr : FCompletion;
  std::vector<TFormEdit>& edits = toComplete.Edits;
  result.Changes = ConvertForm(text, *form.Encoding, FClasses, *FFormParser, output, conversionList,
                               completion != nullptr || FListsEdits ? &edits : nullptr, toComplete.LeavesOut,
                               needsOutline ? &outline : nullptr);
  const bool replacesClasses = result.Changes > 0;
  result.IsChanged = replacesClasses;
  if (!result.IsChanged) edits.clear();  // class names alone, which are not replaced if no object is
  if (completion != nullptr) {
    const std::string completed = completion->CompleteForm(toComplete, *FFormParser);
    const bool isChanged = completed != text;
    if (isChanged && !result.IsChanged) result.Changes = 1;
    result.IsChanged = isChanged;
    output = rtl::TMemoryStream();
    output.Write(form.Encoding->GetBytes(completed));
  }
  if (FListsEdits) result.Edits = ListFormEdits(text, *form.Encoding, FClasses, outline, edits, printed);
  result.UnwritableNames = std::move(FUnwritableNames);
  if (FOldNames != nullptr)
    FindInFormFile(text, form, printed, outline, conversions, toComplete.Unread, replacesClasses, result);
  if (!result.IsChanged) return;
  result.EndsAtNul = text.size() < form.Text.size();
  // Frees memory, which assignments would not do.
  std::string().swap(form.Text);
  std::vector<TObjectConversion>().swap(conversions);
  try {
    if (!form.IsBinary) result.Mark = MarkOf(*form.Encoding, FCompletion);
    result.Bytes = FileBytes(output, form, size);
  } catch (...) {
    result.WriteFailure = std::current_exception();
  }
}

void TFileConverter::FindInFormFile(std::string_view text, const TFormFile& form, TPrintedFile& printed,
                                    const TFormOutline& outline,
                                    const std::vector<TObjectConversion>& conversions,
                                    const std::vector<size_t>& unread, bool replacesClasses,
                                    TFileConversion& result) {
  const auto isUnwritable = [this](std::string_view alias) {
    return std::find(FUnwritableAliases.begin(), FUnwritableAliases.end(), alias) != FUnwritableAliases.end();
  };
  const auto inheritedDatabase = [this](std::string_view alias) {
    if (!OnGetInheritedDatabase) return std::string();
    return NameForForm(OnGetInheritedDatabase(alias, *FFormEncoding), *FFormEncoding).value_or("");
  };
  auto findings = std::make_shared<TFileFindings>();
  findings->Findings =
      FindInForm({text, *form.Encoding, FClasses, *FOldNames, ReportedClasses(), outline, conversions,
                  isUnwritable, unread, inheritedDatabase, replacesClasses, FDetail},
                 *FFormParser);
  findings->Converted = CountConverted(conversions);
  findings->MappedObjects = conversions.size();
  for (const TFinding& finding : findings->Findings) {
    const bool isOther = finding.Rule == TRuleId::InheritedObject || finding.Rule == TRuleId::NestedObject;
    findings->MappedObjects += isOther ? finding.Count : 0;
  }
  findings->IsBinary = form.IsBinary;
  findings->Encoding = EncodingName(*form.Encoding);
  const TTextPlaces places(text, *form.Encoding);
  if (result.IsChanged && !form.IsBinary) {
    const bool keepsMark = FCompletion != nullptr && FCompletion->KeepsMarks();
    const bool keepsLineEnds = FCompletion != nullptr && FCompletion->KeepsLineEnds();
    AddTextFindings(text, *form.Encoding, places, !keepsLineEnds, keepsMark, findings->Findings);
  }
  if (FDetail == TFindingDetail::Counts) {
    ConvertTexts(findings->Findings, *form.Encoding);
  } else if (!form.IsBinary) {
    PlaceFindings(findings->Findings, places, *form.Encoding);
  } else {
    PlaceInPrintedForm(findings->Findings, text, printed);
  }
  result.Findings = std::move(findings);
}

}  // namespace mig
