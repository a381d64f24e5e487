// Completion of units: the fields of the transactions that the connections of a form need.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/TextEdits.h"
#include "qrl/Encoding.h"

namespace completion {

// How a connection gets its transaction.
struct TTransactionRules {
  std::string_view OldClass;        // of the connection; compared ignoring case
  std::string_view NewClass;        // what it became
  std::string_view Class;           // of the transaction
  std::string_view Name;            // of the transaction of the only connection
  std::string_view ConnectionName;  // the property of the transaction that names its connection
};

// Returns the name of the transaction of `connection`, one of `count` connections of a form.
std::string TransactionName(const TTransactionRules& rules, std::string_view connection, size_t count);

// Returns `edits`, those of the conversion of `text`, such that exactly the component fields of the old class bring a
// transaction: fields in the published part of a class with an ancestor. Every other mention of the old class becomes
// the new class and nothing else. A field gets no transaction where its class has a member of that name already;
// `tell` then gets the field's offset in `text`, in bytes, 0-based.
//
// `hasForm` says whether the unit names a form; without one no class has component fields.
mig::TTextEdits CompleteTransactionFields(
    std::string_view text, const qrl::TEncoding& encoding, const mig::TTextEdits& edits, bool hasForm,
    const TTransactionRules& rules, const std::function<void(size_t offset, std::string_view name)>& tell);

}  // namespace completion
