// The opt-in steps after a conversion, as one IFileCompletion.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MigWizard/passes/FileCompletion.h"
#include "MigWizard/passes/OldNames.h"
#include "completion/FormObjects.h"
#include "completion/TransactionFields.h"

namespace completion {

// The steps to do.
struct TSteps {
  bool Uses = false;          // uses clauses get the new units and lose the old ones
  bool Inherited = false;     // inherited, inline and indexed objects are converted
  bool Transactions = false;  // each connection gets one transaction, in unit and form
  bool Layout = false;        // forms keep their indentation, all files their line ends
  bool Marks = false;         // UTF-8 files keep their byte order mark
};

// The data of the target product for these steps. Nothing is owned; all of it must outlive the completion.
struct TRules {
  std::string_view OldUnit;   // the unit that the conversion looks for, ignoring case
  std::string_view NewUnits;  // the text that it inserts: ", First, Second"
  const mig::TOldNames& OldNames;
  TTransactionRules Transaction;
};

class TCompletion : public mig::IFileCompletion {
 public:
  TCompletion(const TSteps& steps, const TRules& rules) : FSteps(steps), FRules(rules) {}

  mig::TCompletedUnit CompleteUnit(const mig::TUnitToComplete& unit) const override;
  void OnUnitKept(const std::vector<std::string>& formFiles) const override;
  std::string CompleteForm(mig::TFormToComplete& form, mig::TFormParser& parser) const override;
  bool ConvertsInherited() const override { return FSteps.Inherited; }
  bool KeepsMarks() const override { return FSteps.Marks; }
  bool KeepsLineEnds() const override { return FSteps.Layout; }

 private:
  mig::TTextEdits EditsOf(const mig::TUnitToComplete& unit, mig::TCompletedUnit& completed) const;
  mig::TTextEdits CompleteFields(const mig::TUnitToComplete& unit, mig::TCompletedUnit& completed) const;
  std::vector<TFormConnections> FindConnectionsOf(const mig::TUnitToComplete& unit) const;
  TTransactionNames TransactionsOf(std::string_view formFile) const;
  void CompleteUses(const mig::TUnitToComplete& unit, mig::TCompletedUnit& completed) const;

  const TSteps FSteps;
  const TRules FRules;
  // The transactions that the unit of a form declares, by the full name of the form in lower case.
  mutable std::unordered_map<std::string, TTransactionNames> FTransactions;
  mutable std::mutex FTransactionsLock;
};

}  // namespace completion
