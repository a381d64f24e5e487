// The names of this migration: the class maps of both modes, the units to insert into uses clauses, and the
// one replacement in units that is more than a name.
#pragma once

#include <memory>
#include <optional>
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

  // Reads the compiled-in list when it is first called.
  const mig::TOldNames* OldNames() override;

 protected:
  // Replaces a declaration of `TDatabase`, spelled exactly so, by two: the connection and its transaction.
  std::string GetReplacement(std::string_view oldClass, std::string_view newClass) override;

 private:
  std::optional<mig::TOldNames> FOldNames;
};

// The objects with the lifetime of the program: the options, and a replacer for each mode, which share them.
// The constructor fills the class maps, and registers the published properties of the target classes, from
// `catalogue`, in the registry (rtl/text/ClassRegistry.h). Raises rtl::Exception if the catalogue lacks a
// class.
class TKVAMigration {
 public:
  explicit TKVAMigration(const TCatalogue& catalogue);
  ~TKVAMigration();

  mig::TReplaceOptions& Options() { return FOptions; }
  TKVAComponentReplacer& BDE() { return *FReplacerBDE; }
  TKVAComponentReplacer& IBX() { return *FReplacerIBX; }

  // Adds these steps to all following runs of both replacers.
  void Complete(const completion::TSteps& steps);

 private:
  mig::TReplaceOptions FOptions;
  std::unique_ptr<TKVAComponentReplacer> FReplacerBDE;
  std::unique_ptr<TKVAComponentReplacer> FReplacerIBX;

  // The completion of one replacer, and the objects to which it refers.
  struct TCompletionOf {
    TCompletionOf(TKVAComponentReplacer& replacer, const completion::TSteps& steps, std::string_view newUnits,
                  const completion::TTransactionRules& transaction);
    const mig::TOldNames OldNames;
    const completion::TCompletion Completion;
  };
  std::unique_ptr<TCompletionOf> FCompletionBDE, FCompletionIBX;
};

}  // namespace target
