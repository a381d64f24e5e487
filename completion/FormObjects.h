// Completion of forms: objects that the conversion leaves out, and the transactions of connections.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "completion/FormLayout.h"
#include "completion/TransactionFields.h"
#include "qrl/Encoding.h"

namespace completion {

// Returns `edits`, those of the conversion of `text`, and those that convert the objects of mapped classes under
// `inherited` and `inline` and those with an index, in the order of the text. They keep their keyword and index. An
// object that `parser` cannot take stays as it is. `edits` inside of such an object give way.
std::vector<TFormEdit> ConvertInherited(std::string_view text, const qrl::TEncoding& encoding,
                                        const mig::TClassMap& classes, mig::TFormParser& parser,
                                        std::vector<TFormEdit> edits);

// Adds to each edit that converts an `object` of the old connection class the object of its transaction, placed beside
// it. A form that has an object of that name already gets none. Returns the names that were taken.
std::vector<std::string> AddTransactions(std::string_view text, const qrl::TEncoding& encoding,
                                         const TTransactionRules& rules, std::vector<TFormEdit>& edits);

}  // namespace completion
