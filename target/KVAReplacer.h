// What becomes what in this migration, at the level of whole names: the class maps of both modes, the units
// that go into uses clauses, and the one place where a unit gets more than a name.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "MigWizard/passes/OldNames.h"
#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/Replacer.h"
#include "completion/Completion.h"
#include "target/Catalogue.h"

namespace target {

class TKVAComponentReplacer : public mig::TComponentReplacer {
 public:
  using TComponentReplacer::TComponentReplacer;

 protected:
  // A declaration of a `TDatabase`, spelled so, becomes two: of the connection, and of its transaction.
  std::string GetReplacement(std::string_view oldClass, std::string_view newClass) override;
};

// The objects that live as long as the program: the options, and a replacer for each mode that shares them.
// Making it fills the class maps, and enters the target classes with what `catalogue` says that they publish
// into the registry (rtl/ClassRegistry.h). Raises rtl::Exception if the catalogue lacks one of them.
class TKVAMigration {
 public:
  explicit TKVAMigration(const TCatalogue& catalogue);
  ~TKVAMigration();

  mig::TReplaceOptions& Options() { return FOptions; }
  TKVAComponentReplacer& BDE() { return *FReplacerBDE; }
  TKVAComponentReplacer& IBX() { return *FReplacerIBX; }

  // Adds these steps to the runs of both replacers from now on.
  void Complete(const completion::TSteps& steps);

 private:
  mig::TReplaceOptions FOptions;
  std::unique_ptr<TKVAComponentReplacer> FReplacerBDE;
  std::unique_ptr<TKVAComponentReplacer> FReplacerIBX;

  // The completion of one replacer, and what it refers to.
  struct TCompletionOf {
    TCompletionOf(TKVAComponentReplacer& replacer, const completion::TSteps& steps, std::string_view newUnits,
                  const completion::TTransactionRules& transaction);
    const mig::TOldNames OldNames;
    const completion::TCompletion Completion;
  };
  std::unique_ptr<TCompletionOf> FCompletionBDE, FCompletionIBX;
};

}  // namespace target
