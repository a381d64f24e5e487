#include "MigWizard/form/PropertyRules.h"

#include <algorithm>

namespace mig {
namespace {

bool Fits(const TPropertyRule& rule, std::string_view propName, std::string_view objType) {
  if (rule.PropName != propName) return false;
  if (rule.ObjTypes.front().empty()) return true;
  return !objType.empty() &&
         std::find(rule.ObjTypes.begin(), rule.ObjTypes.end(), objType) != rule.ObjTypes.end();
}

}  // namespace

const TPropertyRule* FindPropertyRule(std::span<const TPropertyRule> rules, std::string_view propName,
                                      std::string_view objType) {
  for (const TPropertyRule& rule : rules)
    if (Fits(rule, propName, objType)) return &rule;
  return nullptr;
}

}  // namespace mig
