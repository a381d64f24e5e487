// Completion of units: the fields of the transactions that the connections of a form need.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MigWizard/passes/TextEdits.h"
#include "qrl/Encoding.h"

namespace completion {

// How a connection gets its transaction.
struct TTransactionRules {
  std::string_view OldClass;        // of the connection; compared ignoring case
  std::string_view NewClass;        // of the connection after the conversion
  std::string_view Class;           // of the transaction
  std::string_view Name;            // of the transaction of the only connection
  std::string_view ConnectionName;  // the property of the transaction that names its connection
};

// The names of transactions by the class of the form and the name of the connection: see TransactionKey.
using TTransactionNames = std::unordered_map<std::string, std::string>;

std::string TransactionKey(std::string_view className, std::string_view connection);

struct TTransactionFields {
  mig::TTextEdits Edits;        // of the text that was given
  TTransactionNames Names;      // of the fields that were added
  std::vector<size_t> Refused;  // connections without one: offsets of the name of their class, ascending
};

// Returns `edits`, the edits of the conversion of `text`, changed so that exactly the component fields of the
// old class add a transaction. Component fields are those in the published part of a class with an ancestor.
// The transaction is called `rules.Name`, prefixed by the name of the connection if the class has several, or may
// have: if its ancestor is no class of the run-time library, it may have one. Classes that no form belongs to, such as
// those of TComponent, add none.
// Every other mention of the old class is replaced by the new class alone. A field gets no transaction if its
// class already has a member of that name. Offsets are in bytes, 0-based.
//
// `hasForm` is whether the unit names a form; without one no class has component fields.
TTransactionFields CompleteTransactionFields(std::string_view text, const qrl::TEncoding& encoding,
                                             const mig::TTextEdits& edits, bool hasForm,
                                             const TTransactionRules& rules);

}  // namespace completion
