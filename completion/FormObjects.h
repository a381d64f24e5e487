// Completion of forms: objects that the conversion leaves out, and the transactions of connections.
#pragma once

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/FileCompletion.h"
#include "completion/TransactionFields.h"

namespace completion {

// Adds to `form.Edits`, in the order of the text, those that convert the objects of mapped classes that the conversion
// leaves out: those under `inherited` and `inline`, those with an index, and those that hold an object with an index.
// They keep their keyword and index, and their layout. Edits inside of such an object give way. An object that `parser`
// cannot take stays as it is.
void ConvertInherited(mig::TFormToComplete& form, mig::TFormParser& parser);

// Adds to each edit that converts an `object` of the old connection class the object of its transaction, placed beside
// it, if `names`, the transactions that the form's unit declares, has one for it: an object without a field could not
// be loaded. An object of that name that the form has already stays the only one.
void AddTransactions(mig::TFormToComplete& form, const TTransactionNames& names,
                     const TTransactionRules& rules);

}  // namespace completion
