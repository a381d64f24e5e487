// Completion of forms: objects that the conversion leaves out, and the transactions of connections.
#pragma once

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/FileCompletion.h"
#include "completion/TransactionFields.h"

namespace completion {

// Adds edits to `form.Edits`, in the order of the text, for the objects of mapped classes that the conversion
// leaves out: those under `inherited` and `inline`, those with an index, and those that contain an object
// with an index. They keep their keyword, their index and their layout. Edits inside such an object are
// merged into its own. An object that `parser` cannot parse stays as it is.
void ConvertInherited(mig::TFormToComplete& form, mig::TFormParser& parser);

// Adds the object of its transaction, placed next to it, to each edit that converts an `object` of the old
// connection class. Only connections in `names`, the transactions that the form's unit declares, get one,
// because an object without a field could not be loaded. Adds nothing if the form already has an object of
// that name.
void AddTransactions(mig::TFormToComplete& form, const TTransactionNames& names,
                     const TTransactionRules& rules);

}  // namespace completion
