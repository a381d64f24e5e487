#include "MigWizard/passes/UnitFindings.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "MigWizard/engine/PasParser.h"
#include "MigWizard/passes/NameUses.h"
#include "MigWizard/passes/UnitMarks.h"
#include "MigWizard/passes/UnitWords.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

// Adds the edits within comments.
void AddComments(const TUnitFindingInput& input, TNameUses& names) {
  const auto& edits = input.Result.Edits.Edits();
  auto edit = edits.begin();
  for (const std::string_view comment : input.Result.ChangedComments) {
    const auto start = static_cast<size_t>(comment.data() - input.Text.data());
    while (edit != edits.end() && edit->Position < start) ++edit;
    for (; edit != edits.end() && edit->Position < start + comment.size(); ++edit) {
      TFinding& finding = names.Add(TRuleId::ChangedText, edit->Position);
      finding.Subject = finding.Value = finding.OldClass =
          std::string(input.Text.substr(edit->Position, edit->Length));
      finding.NewClass = edit->Replacement;
      if (comment.starts_with("{$") || comment.starts_with("(*$")) finding.Level = TLevel::Warning;
    }
  }
}

// Adds the edits that were removed by choice.
void AddDeselected(const TUnitFindingInput& input, TNameUses& names) {
  for (const size_t offset : input.Result.LeftOut) {
    TPasParser scanner(input.Text, input.Encoding);
    scanner.SetPosition(offset);
    std::string_view name;
    (void)scanner.GetNext(name);
    names.Add(TRuleId::Deselected, offset).Subject = name;
  }
}

// Returns the first place where the unit names a new class after the run, or null.
const TUnitMark* FirstNewClass(const TUnitFindingInput& input, const TNameUses& names) {
  const std::vector<TUnitMark>& marks = input.Result.Marks;
  const auto mark = std::find_if(marks.begin(), marks.end(), [&names](const TUnitMark& each) {
    const bool isMapped = (each.Flags & kMappedClass) != 0;
    return isMapped ? !names.IsLeftOut(each.Offset) : (each.Flags & kNewClass) != 0;
  });
  return mark == marks.end() ? nullptr : &*mark;
}

// Adds the findings about the places that the completion left as they were.
void AddRefusals(const TUnitFindingInput& input, TNameUses& names) {
  if (input.Completed == nullptr) return;
  for (const TRefusal& refusal : input.Completed->Refusals) {
    const TUnitMark* const mark = refusal.Offset ? nullptr : FirstNewClass(input, names);
    TFinding& finding =
        names.Add(TRuleId::NotCompleted, mark != nullptr ? mark->Offset : refusal.Offset.value_or(0));
    finding.Level = refusal.Level;
    finding.Subject = refusal.Subject;
    finding.Detail = refusal.Detail;
  }
}

// Returns the new class that is named at `offset` after the run.
std::string NewClassAt(const TUnitFindingInput& input, size_t offset) {
  TPasParser scanner(input.Text, input.Encoding);
  scanner.SetPosition(offset);
  std::string_view name;
  (void)scanner.GetNext(name);
  const std::string* const newClass = input.Rules.Classes.Find(name);
  return newClass != nullptr ? *newClass : std::string(name);
}

// Adds the findings about the units in the uses clauses.
void AddUnits(const TUnitFindingInput& input, TNameUses& names) {
  const std::vector<std::string> newUnits = NamesOf(input.Rules.NewUnits);
  std::vector<int> counts(newUnits.size());  // of the new units after the run
  size_t firstDoubled = 0;
  bool isDoubled = false, hasNew = false, hasAny = false;
  for (const TUsedUnit& used : names.UsedUnits()) {
    const size_t lastPart = used.Name.rfind('.') + 1;
    const bool isReplaced = rtl::SameText(used.Name.substr(lastPart), input.Rules.OldUnit) &&
                            !names.IsLeftOut(used.Offset + lastPart);
    for (size_t i = 0; i < newUnits.size(); ++i) {
      const bool isNew = rtl::SameText(used.Name, newUnits[i]);
      if (!isNew && !isReplaced) continue;
      hasAny = true;
      if (isNew && !std::exchange(hasNew, true) && !input.Result.Edits.Empty())
        names.Add(TRuleId::SecondConversion, used.Offset).Subject = newUnits[i];
      if (++counts[i] == 2 && !std::exchange(isDoubled, true)) firstDoubled = used.Offset;
    }
    const TOldName* old = used.HasPath ? nullptr : input.OldNames.FindUnit(used.Name);
    if (old == nullptr) continue;
    TFinding& finding = names.Add(TRuleId::OldUnit, used.Offset);
    finding.Subject = used.Name;
    finding.Advice = old->Advice;
  }
  if (isDoubled) {
    TFinding& finding = names.Add(TRuleId::DoubledUnits, firstDoubled);
    std::set<std::string> doubled;  // in alphabetical order
    for (size_t i = 0; i < newUnits.size(); ++i)
      if (counts[i] > 1) doubled.insert(newUnits[i]);
    for (const std::string& name : doubled)
      finding.Subject.append(finding.Subject.empty() ? "" : ", ").append(name);
    finding.Value = std::to_string(*std::max_element(counts.begin(), counts.end()));
  }
  const TUnitMark* const mark = !hasAny ? FirstNewClass(input, names) : nullptr;
  if (mark != nullptr) {
    TFinding& finding = names.Add(TRuleId::NoNewUnits, mark->Offset);
    finding.Subject = finding.NewClass = NewClassAt(input, mark->Offset);
    for (const std::string& name : newUnits)
      finding.Value.append(finding.Value.empty() ? "" : ", ").append(name);
  }
}

// Reads declarations only.
class TDeclarationReader : public TUnitReader {
 public:
  using TUnitReader::TUnitReader;
  bool IsLeftOut(size_t /*offset*/) const override { return false; }

 protected:
  void OnName(TNameSpot /*spot*/) override {}
  void BeforeMembers() override {}
  void AfterMembers(const TClassOutline& /*outline*/) override {}
};

}  // namespace

TUnitFindings FindInUnit(const TUnitFindingInput& input, const TTextPlaces& places) {
  const TUnitParts parts = PartsToRead(input.Text.size(), input.Result, input.ReadsInterface);
  const std::vector<TUnitToken> code = ReadUnitTokens(input.Text, input.Encoding, input.Names, parts.Ranges);
  TNameUses names(input, code, places);
  names.ReadUnit();
  for (const size_t offset : parts.LinesInBodies) names.AddLineInBody(offset);
  AddComments(input, names);
  AddDeselected(input, names);
  AddUnits(input, names);
  AddRefusals(input, names);
  TUnitOutline& outline = names.Outline();
  if (!outline.Uses.empty())
    for (const TUsedUnit& used : names.UsedUnits()) outline.UsedUnits.push_back(rtl::LowerCase(used.Name));
  std::vector<TFinding>& findings = names.Findings();
  if (input.Detail == TFindingDetail::Whole) {
    for (TFinding& finding : findings) names.ShowLine(finding.Offset, finding.Before, finding.After);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const TFinding& left, const TFinding& right) { return left.Offset < right.Offset; });
  } else {
    MergeEqual(findings, 0);
  }
  return {std::move(findings), std::move(outline), parts.UnreadInterface};
}

TUnitOutline ReadInterface(std::string_view text, const qrl::TEncoding& encoding) {
  const std::vector<TUnitToken> code = ReadUnitTokens(text, encoding, TNameTable(), {{0, text.size()}});
  const TTextPlaces places(text, encoding);
  TDeclarationReader reader(code, &places);
  reader.ReadUnit();
  return std::move(reader.Outline());
}

}  // namespace mig
