// The steps after a conversion that complete what it leaves, as the passes see them. Without them a file comes out
// exactly as the conversion made it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/TextEdits.h"
#include "qrl/Encoding.h"

namespace mig {

struct TUnitToComplete {
  std::string_view Text;  // before the conversion, working text
  const qrl::TEncoding& Encoding;
  const TClassMap& Classes;
  const TTextEdits& Edits;  // of the conversion
  bool HasForm = false;     // a resource directive names one
};

struct TCompletedUnit {
  std::string Text;
  // What needs no finding any more.
  bool SettlesUses = false;               // the uses clauses have what the unit needs, once
  bool SettlesTransactions = false;       // each transaction is where it belongs
  std::vector<std::string> RemovedUnits;  // old units, as they were spelled
};

struct TFormToComplete {
  std::string_view Text;  // before the conversion, working text
  const qrl::TEncoding& Encoding;
  const TClassMap& Classes;
  std::vector<TFormEdit> Edits;  // of the conversion
  std::vector<TObjectAccount>*
      Accounts;  // null if they are not collected; objects that a step converts are added
};

// Called by several threads at a time.
class IFileCompletion {
 public:
  virtual ~IFileCompletion() = default;
  // Return the whole text after conversion and completion. They may raise.
  virtual TCompletedUnit CompleteUnit(const TUnitToComplete& unit) const = 0;
  virtual std::string CompleteForm(TFormToComplete form, TFormParser& parser) const = 0;
  // Whether a changed file keeps its UTF-8 mark, and whether every line that is written ends as the file's lines do.
  virtual bool KeepsMarks() const = 0;
  virtual bool KeepsLineEnds() const = 0;
};

}  // namespace mig
