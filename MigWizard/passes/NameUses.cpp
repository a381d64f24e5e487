#include "MigWizard/passes/NameUses.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "MigWizard/engine/PasParser.h"
#include "MigWizard/passes/FindingRules.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

struct TSpotRow {
  TNameSpot Spot;
  const char* Text;
  TLevel Level;
};

constexpr TSpotRow kSpots[] = {
    {TNameSpot::Expression, "an expression", TLevel::Error},
    {TNameSpot::ClassHeading, "a class heading", TLevel::Error},
    {TNameSpot::Parameters, "a parameter list", TLevel::Error},
    {TNameSpot::Variable, "a variable declaration", TLevel::Warning},
    {TNameSpot::Field, "a component field", TLevel::Note},
    {TNameSpot::RecordField, "a field of a record", TLevel::Warning},
    {TNameSpot::Property, "a property declaration", TLevel::Error},
    {TNameSpot::Result, "the result of a function", TLevel::Error},
};

bool IsOneOf(std::string_view unit, std::string_view list) {
  const std::vector<std::string> names = NamesOf(list);
  return std::any_of(names.begin(), names.end(),
                     [unit](const std::string& name) { return rtl::SameText(name, unit); });
}

}  // namespace

// Returns the names in a list like ", First, Second".
std::vector<std::string> NamesOf(std::string_view list) {
  std::vector<std::string> names;
  while (!list.empty()) {
    const size_t end = std::min(list.find(','), list.size());
    if (const std::string_view name = rtl::Trim(list.substr(0, end)); !name.empty()) names.emplace_back(name);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

void TNameUses::OnName(TNameSpot spot) {
  const TUnitToken& token = Token();
  if ((token.Flags & kAddsLine) != 0 && !IsLeftOut(token.Offset)) AddTransaction(spot);
  if ((token.Flags & (kOldName | kOldMember)) == 0 || (token.Flags & kMappedClass) != 0) return;
  if (const TOldName* old = FInput.OldNames.Find(TOldNames::Class, token.Lexem)) {
    NoteUse(TNameUse::OldClass, *old, 0);
  } else if (const TOldName* prefix = FInput.OldNames.FindPrefix(token.Lexem)) {
    NoteCall(*prefix);
  } else if (const TOldName* call = FInput.OldNames.Find(TOldNames::Call, token.Lexem)) {
    if (Token(1).Lexem == "(") NoteUse(TNameUse::OldCall, *call, 0);
  } else if (const TOldName* object = FInput.OldNames.Find(TOldNames::Object, token.Lexem)) {
    if (Token(1).Lexem == ".") NoteUse(TNameUse::OldCall, *object, 0);
  } else if (Before(1).Lexem == "." && FInput.OldNames.IsMember(token.Lexem)) {
    NoteUse(TNameUse::OldMember, {}, 0);
  }
}

void TNameUses::BeforeMembers() {
  FClasses.emplace_back();
}

void TNameUses::AfterMembers(const TClassOutline& outline) {
  AddTransactions(FClasses.back(), outline);
  FClasses.pop_back();
}

// Returns True if the edit at `offset` is left out by choice.
bool TNameUses::IsLeftOut(size_t offset) const {
  const std::vector<size_t>& leftOut = FInput.Result.LeftOut;
  return std::binary_search(leftOut.begin(), leftOut.end(), offset);
}

// Returns the lines before and after the completion of the uses clauses.
const TLinePairs& TNameUses::Pairs() {
  if (!FPairs) {
    FBeforeUses = FInput.Completed->Edits.Apply(FInput.Text);
    FPairs.emplace(FBeforeUses, FInput.Completed->Text, FInput.Encoding);
  }
  return *FPairs;
}

// For `Check(DbiInit(nil))` the place is that of Check.
void TNameUses::NoteCall(const TOldName& prefix) {
  const bool isChecked = Before(1).Lexem == "(" && rtl::SameText(Before(2).Lexem, "Check");
  NoteUse(TNameUse::OldCall, prefix, isChecked && Before(3).Lexem != "." ? 2 : 0);
}

// `back` is the number of tokens between the beginning of the finding and the current token.
void TNameUses::NoteUse(TNameUse::TKind kind, const TOldName& old, size_t back) {
  TNameUse use;
  use.Kind = kind;
  use.Name = Token().Lexem;
  size_t first = 0;  // tokens before the current one
  while (Before(first + 1).Lexem == "." && Before(first + 2).IsName) {
    first += 2;
    use.Path.insert(use.Path.begin(), std::string(Before(first).Lexem));
  }
  // After a call, an index or a dereference, the type is not known.
  if (Before(first + 1).Lexem == "." || Before(first + 1).Word == TWord::Inherited) return;
  const bool isQualified = !use.Path.empty();
  if (kind == TNameUse::OldMember) {
    if (!isQualified || IsInWith()) return;
  } else {
    if (isQualified && !IsUnitOf(old, use.Path)) return;
    if (!isQualified && (IsInWith() || !UsesUnitOf(old))) return;
    if (!isQualified && IsDeclaredHere()) return;
  }
  use.Shown = std::string(
      FInput.Text.substr(Before(back).Offset, Token().Offset + Token().Lexem.size() - Before(back).Offset));
  if (!Routines().empty()) use.Owner = Routines().back().Owner;
  FindLocal(use);
  if (kind != TNameUse::OldMember && !isQualified && use.IsLocal) return;
  if (FInput.Detail == TFindingDetail::Whole) {
    use.Place = FPlaces.At(kind == TNameUse::OldMember ? Token().Offset : Before(back).Offset);
    ShowLine(Token().Offset, use.Before, use.After);
  }
  Outline().Uses.push_back(std::move(use));
}

// Returns True if the current tokens declare the name: `Session: TMySession`, `Session = class`.
bool TNameUses::IsDeclaredHere() const {
  const std::string_view after = Token(1).Lexem;
  return (after == ":" || after == "=" || after == ",") && Routines().empty();
}

void TNameUses::FindLocal(TNameUse& use) const {
  const std::string_view first =
      use.Path.empty() ? std::string_view(use.Name) : std::string_view(use.Path[0]);
  for (auto routine = Routines().rbegin(); routine != Routines().rend(); ++routine) {
    for (const TDeclaration& local : routine->Locals) {
      if (!rtl::SameText(local.Name, first)) continue;
      use.IsLocal = true;
      use.Local = local;
      return;
    }
  }
}

bool TNameUses::IsUnitOf(const TOldName& old, const std::vector<std::string>& path) const {
  std::string name;
  for (const std::string& part : path) name.append(name.empty() ? "" : ".").append(part);
  const TOldName* unit = FInput.OldNames.FindUnit(name);
  return unit != nullptr && IsOneOf(unit->Name, old.Unit) && UsesUnitOf(old);
}

bool TNameUses::UsesUnitOf(const TOldName& old) const {
  return std::any_of(UsedUnits().begin(), UsedUnits().end(), [&](const TUsedUnit& used) {
    const TOldName* unit = used.HasPath ? nullptr : FInput.OldNames.FindUnit(used.Name);
    return unit != nullptr && IsOneOf(unit->Name, old.Unit);
  });
}

// Returns the new class if the class, as it is spelled, is replaced by more than one line, and otherwise
// null.
const std::string* TNameUses::ClassWithLine(std::string_view name) const {
  const std::string* const newClass = FInput.Rules.Classes.Find(name);
  const bool addsLine =
      newClass != nullptr && FInput.Rules.GetReplacement(name, *newClass).find('\n') != std::string::npos;
  return addsLine ? newClass : nullptr;
}

void TNameUses::AddTransaction(TNameSpot spot) {
  const std::string* const newClass = ClassWithLine(Token().Lexem);
  if (newClass == nullptr) return;
  const bool isName =
      spot == TNameSpot::Field || spot == TNameSpot::RecordField || spot == TNameSpot::Variable;
  if (isName && Before(1).Lexem != ":" && Before(1).Lexem != ".") spot = TNameSpot::Expression;
  const bool isCall = Token(1).Lexem == "." && rtl::SameText(Token(2).Lexem, "Create");
  if (spot == TNameSpot::Field && !FClasses.empty()) FClasses.back().push_back(FFindings.size());
  AddTransaction(spot, Token().Lexem, *newClass, Token().Offset, isCall);
}

void TNameUses::AddLineInBody(size_t offset) {
  if (IsLeftOut(offset)) return;
  TPasParser scanner(FInput.Text, FInput.Encoding);
  scanner.SetPosition(offset);
  std::string_view lexems[3];
  for (std::string_view& lexem : lexems) {
    for (int code = qrl::kWhiteSpace; code == qrl::kWhiteSpace || code == qrl::kComment;)
      code = scanner.GetNext(lexem);
  }
  const std::string* const newClass = ClassWithLine(lexems[0]);
  if (newClass == nullptr) return;
  const bool isCall = lexems[1] == "." && rtl::SameText(lexems[2], "Create");
  AddTransaction(TNameSpot::Expression, lexems[0], *newClass, offset, isCall);
}

void TNameUses::AddTransaction(TNameSpot spot, std::string_view name, const std::string& newClass,
                               size_t offset, bool isCall) {
  const TSpotRow& row = *std::find_if(std::begin(kSpots), std::end(kSpots),
                                      [spot](const TSpotRow& each) { return each.Spot == spot; });
  TFinding& finding = Add(TRuleId::TransactionLine, offset);
  finding.Level = row.Level;
  finding.OldClass = name;
  finding.NewClass = newClass;
  finding.Subject = spot == TNameSpot::Expression && isCall ? "a constructor call" : row.Text;
  if (FInput.Detail == TFindingDetail::Whole) finding.Detail = finding.Subject;
}

// A class cannot have two members with the same name: only the first field is correct, and none is if the
// class already has a member with that name.
void TNameUses::AddTransactions(const std::vector<size_t>& fields, const TClassOutline& outline) {
  bool isTaken = std::any_of(outline.Members.begin(), outline.Members.end(), [](const TDeclaration& member) {
    return rtl::SameText(member.Name, "Transaction");
  });
  for (const size_t index : fields) {
    TFinding& finding = FFindings[index];
    if (std::exchange(isTaken, true)) {
      finding.Level = TLevel::Error;
      finding.Subject = "once more in the same class";
      finding.Detail = "a class that has a member of that name already";
    }
  }
}

TFinding& TNameUses::Add(TRuleId rule, size_t offset) {
  TFinding& finding = FFindings.emplace_back();
  finding.Rule = rule;
  finding.Level = RuleOf(rule).Level;
  finding.Offset = offset;
  return finding;
}

// Sets `before` and `after` to the source line at `offset` before and after the run.
void TNameUses::ShowLine(size_t offset, std::string& before, std::string& after) {
  const std::string_view line = FPlaces.LineAt(offset);
  const auto start = static_cast<size_t>(line.data() - FInput.Text.data());
  const bool isCompleted = FInput.Completed != nullptr;
  const std::vector<TTextEdits::TEdit>& edits =
      isCompleted ? FInput.Completed->Edits.Edits() : FInput.Result.Edits.Edits();
  auto edit = std::lower_bound(
      edits.begin(), edits.end(), start,
      [](const TTextEdits::TEdit& each, size_t position) { return each.Position < position; });
  size_t newStart = start;
  if (isCompleted)
    for (auto each = edits.begin(); each != edit; ++each) newStart += each->Replacement.size() - each->Length;
  std::string changed;
  size_t done = 0;
  for (; edit != edits.end() && edit->Position < start + line.size(); ++edit) {
    changed.append(line.substr(done, edit->Position - start - done)).append(edit->Replacement);
    done = std::min(edit->Position - start + edit->Length, line.size());
  }
  before = ShownValue({}, line);
  changed.append(line.substr(done));
  if (isCompleted) changed = Pairs().After(newStart, newStart + changed.size());
  after = ShownValue({}, changed);
}

}  // namespace mig
