// The table of rules by which findings are reported.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/Findings.h"

namespace mig {

// A rule of the table.
struct TRule {
  TRuleId Id;
  std::string_view Name;     // "dropped-property"
  TLevel Level;              // the default; a finding may have another one
  std::string_view Message;  // with {object} {oldClass} {newClass} {subject} {value} {detail}
  std::string_view Advice;
  std::string_view About;    // a paragraph of the documentation
  std::string_view Example;  // lines of source
};

const TRule& RuleOf(TRuleId id);
const std::vector<TRule>& Rules();
std::string_view LevelName(TLevel level);  // "error", "warning", "note"

// Returns the finding as a sentence without a full stop, and its advice.
std::string MessageOf(const TFinding& finding);
std::string AdviceOf(const TFinding& finding);

// Returns True if `name` suggests a secret, or `value` itself looks like one. Both are working text.
bool CouldBeSecret(std::string_view name, std::string_view value);
// Returns a value or a source line as shown in a finding: on one line, at most 200 bytes, and "(withheld)" if
// it could be a secret.
std::string ShownValue(std::string_view name, std::string_view value);

}  // namespace mig
