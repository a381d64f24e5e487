// Completion of forms: objects that the conversion leaves out, and the transactions of connections.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/FileCompletion.h"
#include "completion/TransactionFields.h"

namespace completion {

// Adds edits to `form.Edits`, in the order of the text, for the objects of mapped classes that the conversion
// leaves out: those under `inherited` and `inline`, those with an index, and those that contain an object
// with an index. They keep their keyword, their index and their layout. Edits inside such an object are
// merged into its own. An object that `parser` cannot parse stays as it is.
void ConvertInherited(mig::TFormToComplete& form, mig::TFormParser& parser);

// The connections of a form and the names of its objects, both by their names in lower case.
struct TFormConnections {
  struct TConnection {
    size_t Offset;          // of its keyword
    std::string_view Name;  // a view into the form
  };
  std::string Class;  // of the form, in lower case
  std::unordered_map<std::string, TConnection> Connections;
  std::unordered_set<std::string> Names;  // without those in frames
};

// Finds the connections that are an `object` of the old class and that the edits of the form convert.
TFormConnections FindConnections(mig::TFormToComplete& form, const TTransactionRules& rules);

// Adds the object of its transaction, placed next to it, to each edit that converts a connection. Only
// connections in `names`, the transactions that the form's unit declares, get one, because an object without
// a field could not be loaded. Adds nothing if the form already has an object of that name.
void AddTransactions(mig::TFormToComplete& form, const TTransactionNames& names,
                     const TTransactionRules& rules);

}  // namespace completion
