// Completion of units: the fields of the transactions that the connections of a form need.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MigWizard/passes/FileCompletion.h"
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

// Whether the form of a class has a place for the transaction of a connection.
enum class TTransactionPlace {
  Free,
  NoConnection,  // no form of that class has an object of that name which is converted
  Taken          // the form has another object with the name of the transaction
};
using TFindTransactionPlace = std::function<TTransactionPlace(
    std::string_view className, std::string_view connection, std::string_view transaction)>;

struct TTransactionFields {
  mig::TTextEdits Edits;                // of the text that was given
  TTransactionNames Names;              // of the fields that were added
  std::vector<mig::TRefusal> Refusals;  // connections without one, in the order of the text
};

// Returns `edits`, the edits of the conversion of `text`, changed so that exactly the component fields of the
// old class add a transaction. Component fields are those in the published part of a class with an ancestor.
// The transaction is called `rules.Name`, prefixed by the name of the connection if the class has several, or
// may have: if its ancestor is no class of the run-time library, it may have one. Classes that no form
// belongs to, such as those of TComponent, add none. Every other mention of the old class is replaced by the
// new class alone. A field gets no transaction if its class already has a member of that name, or if its form
// has no place for one. Offsets are in bytes, 0-based.
//
// `findPlace` is empty if the unit names no form; no class has component fields then.
TTransactionFields CompleteTransactionFields(std::string_view text, const qrl::TEncoding& encoding,
                                             const mig::TTextEdits& edits,
                                             const TFindTransactionPlace& findPlace,
                                             const TTransactionRules& rules);

}  // namespace completion
