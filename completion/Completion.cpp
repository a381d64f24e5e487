#include "completion/Completion.h"

#include <algorithm>
#include <optional>

#include "MigWizard/engine/PasParser.h"
#include "completion/FormLayout.h"
#include "completion/FormObjects.h"
#include "completion/UnitTokens.h"
#include "completion/UsesStep.h"
#include "rtl/text/SysUtils.h"

namespace completion {
namespace {

// Returns `edits` with the line ends of `text` in the inserted text.
mig::TTextEdits WithLineEnds(const mig::TTextEdits& edits, std::string_view text) {
  const std::string_view lineEnd = LineEndOf(text);
  mig::TTextEdits result;
  for (const mig::TTextEdits::TEdit& edit : edits.Edits()) {
    std::string replacement;
    for (const char c : edit.Replacement) {
      if (c == '\n') {
        replacement += lineEnd;
      } else if (c != '\r') {
        replacement += c;
      }
    }
    result.Replace(edit.Position, edit.Length, std::move(replacement));
  }
  return result;
}

// A class can have several forms, a DFM and an NFM: each of them needs a place.
TTransactionPlace FindPlace(const std::vector<TFormConnections>& forms, std::string_view className,
                            std::string_view connection, std::string_view transaction) {
  auto place = TTransactionPlace::NoConnection;
  for (const TFormConnections& form : forms) {
    if (!rtl::SameText(form.Class, className)) continue;
    if (!form.Connections.contains(rtl::LowerCase(connection))) return TTransactionPlace::NoConnection;
    if (form.Names.contains(rtl::LowerCase(transaction))) return TTransactionPlace::Taken;
    place = TTransactionPlace::Free;
  }
  return place;
}

bool NamesNewClass(std::string_view text, const qrl::TEncoding& encoding, const mig::TClassMap& classes) {
  mig::TPasParser scanner(text, encoding);
  std::string_view lexem;
  while (const int code = scanner.GetNextWord(lexem)) {
    if (code == qrl::kIdentifier && classes.IsNewClass(lexem)) return true;
  }
  return false;
}

}  // namespace

mig::TCompletedUnit TCompletion::CompleteUnit(const mig::TUnitToComplete& unit) const {
  mig::TCompletedUnit completed;
  completed.Edits = EditsOf(unit, completed);
  completed.Text = completed.Edits.Apply(unit.Text);
  // A unit without new classes is not touched, whatever units it lists.
  if (FSteps.Uses && (!unit.Edits.Empty() || NamesNewClass(unit.Text, unit.Encoding, unit.Classes)))
    CompleteUses(unit, completed);
  return completed;
}

mig::TTextEdits TCompletion::EditsOf(const mig::TUnitToComplete& unit, mig::TCompletedUnit& completed) const {
  if (FSteps.Transactions) return CompleteFields(unit, completed);
  return FSteps.Layout ? WithLineEnds(unit.Edits, unit.Text) : unit.Edits;
}

mig::TTextEdits TCompletion::CompleteFields(const mig::TUnitToComplete& unit,
                                            mig::TCompletedUnit& completed) const {
  std::optional<std::vector<TFormConnections>> forms;
  const auto findPlace = [&](std::string_view className, std::string_view connection,
                             std::string_view transaction) {
    if (!forms) forms = FindConnectionsOf(unit);
    return FindPlace(*forms, className, connection, transaction);
  };
  TTransactionFields fields = CompleteTransactionFields(
      unit.Text, unit.Encoding, unit.Edits,
      unit.FormFiles.empty() ? TFindTransactionPlace() : TFindTransactionPlace(findPlace),
      FRules.Transaction);
  completed.SettlesTransactions = true;
  completed.Refusals = std::move(fields.Refusals);
  const std::lock_guard<std::mutex> guard(FTransactionsLock);
  for (const std::string& form : unit.FormFiles) FTransactions[rtl::LowerCase(form)] = fields.Names;
  return std::move(fields.Edits);
}

// Returns the connections of the unit's forms as they are after the completion.
std::vector<TFormConnections> TCompletion::FindConnectionsOf(const mig::TUnitToComplete& unit) const {
  std::vector<TFormConnections> forms;
  unit.LookAtForms([&](mig::TFormToComplete& form, mig::TFormParser& parser) {
    if (FSteps.Inherited) ConvertInherited(form, parser);
    forms.push_back(FindConnections(form, FRules.Transaction));
  });
  return forms;
}

void TCompletion::OnUnitKept(const std::vector<std::string>& formFiles) const {
  const std::lock_guard<std::mutex> guard(FTransactionsLock);
  for (const std::string& form : formFiles) FTransactions.erase(rtl::LowerCase(form));
}

TTransactionNames TCompletion::TransactionsOf(std::string_view formFile) const {
  const std::lock_guard<std::mutex> guard(FTransactionsLock);
  const auto place = FTransactions.find(rtl::LowerCase(formFile));
  return place == FTransactions.end() ? TTransactionNames() : place->second;
}

void TCompletion::CompleteUses(const mig::TUnitToComplete& unit, mig::TCompletedUnit& completed) const {
  completed.SettlesUses = true;
  const TUsesRules rules = {FRules.OldUnit,
                            FRules.NewUnits,
                            [&](std::string_view identifier) { return unit.Classes.IsNewClass(identifier); },
                            [&](std::string_view name) {
                              return FRules.OldNames.FindUnit(name) && FRules.OldNames.HasNamesOf(name);
                            },
                            [&](std::string_view identifier, std::string_view name) {
                              return FRules.OldNames.Declares(name, identifier);
                            },
                            [&](std::string_view identifier, std::string_view name) {
                              return FRules.OldNames.MayDeclare(name, identifier);
                            }};
  completed.Text = completion::CompleteUses(
      completed.Text, unit.Encoding, rules,
      {[&](TUsesRefusal refusal, size_t, std::string_view name) {
         if (refusal == TUsesRefusal::Source) completed.SettlesUses = false;
         if (refusal == TUsesRefusal::Stuck)
           completed.Refusals.push_back(
               {std::nullopt, mig::TLevel::Error, "the interface's uses clause",
                "the implementation's lists " + std::string(name) + " next to a compiler directive"});
       },
       [&](std::string_view name) { completed.RemovedUnits.emplace_back(name); }});
}

std::string TCompletion::CompleteForm(mig::TFormToComplete& form, mig::TFormParser& parser) const {
  if (FSteps.Inherited) ConvertInherited(form, parser);
  if (FSteps.Transactions) AddTransactions(form, TransactionsOf(form.FileName), FRules.Transaction);
  return ApplyFormEdits(form.Text, form.Edits, FSteps.Layout);
}

}  // namespace completion
