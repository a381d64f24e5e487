#include "target/KVAReplacer.h"

#include "rtl/text/ClassRegistry.h"
#include "rtl/text/SysUtils.h"
#include "target/KVAFormParser.h"
#include "target/OldNameList.h"

namespace target {
namespace {

constexpr char kSourceName[] = "BDE/IBX";
constexpr char kOldUnit[] = "DBTables";  // in both modes
constexpr char kNewUnitsBDE[] = ", Quorel, KVA, Velmar, KVAError";
constexpr char kNewUnitsIBX[] = ", Quorel, KVA, KVAScript, Velmar, KVAError";

constexpr completion::TTransactionRules kTransactionBDE = {"TDatabase", "TKVAConnection", "TKVATransaction",
                                                           "Transaction", "DefaultConnection"};
// The connections of this mode already have their own transactions.
constexpr completion::TTransactionRules kTransactionIBX = {};

struct TClassRow {
  const char* OldClass;
  const char* NewClass;
  bool Registers;  // adds the new class to the registry, which the property filter needs
};

constexpr TClassRow kClassesBDE[] = {
    {"TDatabase", "TKVAConnection", true},     {"TQuery", "TKVAQuery", false},
    {"TwwQuery", "TKVAQuery", true},           {"TTable", "TKVATable", false},
    {"TwwTable", "TKVATable", true},           {"TStoredProc", "TKVAStoredProc", false},
    {"TwwStoredProc", "TKVAStoredProc", true}, {"TUpdateSQL", "TKVAUpdateSQL", true},
    {"EDBEngineError", "EKVAError", false},    {"TBatchMove", "THXBatchMove", false},
};

constexpr TClassRow kClassesIBX[] = {
    {"TIBDatabase", "TKVAConnection", true}, {"TIBTransaction", "TKVATransaction", true},
    {"TIBQuery", "TKVAQuery", true},         {"TIBSQL", "TKVASQL", true},
    {"TIBScript", "TKVAScript", true},       {"TIBDataset", "TKVAQuery", true},
    {"TIBTable", "TKVATable", true},         {"TIBStoredProc", "TKVAStoredProc", true},
    {"TIBUpdateSQL", "TKVAUpdateSQL", true}, {"EDBEngineError", "EKVAError", false},
};

template <size_t N>
void FillMap(TKVAComponentReplacer& replacer, const TClassRow (&rows)[N], const TCatalogue& catalogue) {
  for (const TClassRow& row : rows) {
    replacer.AddClass(row.OldClass, row.NewClass);
    if (row.Registers) rtl::RegisterClass(catalogue.ClassInfo(row.NewClass));
  }
}

std::unique_ptr<TKVAComponentReplacer> MakeReplacer(const char* newUnits, mig::TReplaceOptions& options) {
  const auto parserClass = [](mig::TParseStateClass stateClass) {
    return std::make_unique<TKVAFormParser>(std::move(stateClass));
  };
  return std::make_unique<TKVAComponentReplacer>(parserClass, kOldUnit, newUnits, options);
}

}  // namespace

std::string TKVAComponentReplacer::GetReplacement(std::string_view oldClass, std::string_view newClass) {
  if (newClass == "TKVAConnection" && oldClass == "TDatabase")
    return std::string(newClass) + ";\r\n    Transaction: TKVATransaction";
  return TComponentReplacer::GetReplacement(oldClass, newClass);
}

const mig::TOldNames* TKVAComponentReplacer::OldNames() {
  if (!FOldNames) FOldNames = BuiltInOldNames(Classes());
  return &*FOldNames;
}

TKVAMigration::TKVAMigration(const TCatalogue& catalogue)
    : FOptions(kSourceName),
      FReplacerBDE(MakeReplacer(kNewUnitsBDE, FOptions)),
      FReplacerIBX(MakeReplacer(kNewUnitsIBX, FOptions)) {
  FillMap(*FReplacerBDE, kClassesBDE, catalogue);
  FillMap(*FReplacerIBX, kClassesIBX, catalogue);
}

TKVAMigration::~TKVAMigration() {
  FReplacerBDE.reset();
  FReplacerIBX.reset();
}

TKVAMigration::TCompletionOf::TCompletionOf(TKVAComponentReplacer& replacer, const completion::TSteps& steps,
                                            std::string_view newUnits,
                                            const completion::TTransactionRules& transaction)
    : OldNames(BuiltInOldNames(replacer.Classes())),
      Completion(steps, {kOldUnit, newUnits, OldNames, transaction}) {
  replacer.SetCompletion(&Completion);
}

void TKVAMigration::Complete(const completion::TSteps& steps) {
  FCompletionBDE = std::make_unique<TCompletionOf>(BDE(), steps, kNewUnitsBDE, kTransactionBDE);
  FCompletionIBX = std::make_unique<TCompletionOf>(IBX(), steps, kNewUnitsIBX, kTransactionIBX);
}

}  // namespace target
