// The conversion of single properties, as rows of a table.
//
//   constexpr TPropertyRule kRules[] = {
//       {"DataSource", {"TQuery"}, TPropertyEffect::Rename, "MasterSource"},
//       {"DatabaseName", {}, TPropertyEffect::Reference, "Connection"},
//   };
//   if (const TPropertyRule* rule = FindPropertyRule(kRules, propName, FormState().ObjType)) ...
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace mig {

// An entry of a list of login parameters, and the property that takes its value.
struct TLoginField {
  std::string_view ParameterName;  // case is ignored
  std::string_view PropName;
};

enum class TPropertyEffect {
  Drop,       // is left out
  Rename,     // is printed as NewName, with its value unchanged
  Reference,  // is printed as NewName with the result of OnGetPropValue; left out if that is empty
  Login,      // becomes one property for each of LoginFields that its list has a value for, in that order
};

struct TPropertyRule {
  std::string_view PropName;  // compared exactly
  // Compared exactly. If the first one is empty, the rule fits every class.
  std::array<std::string_view, 4> ObjTypes;
  TPropertyEffect Effect;
  std::string_view NewName = {};
  std::span<const TLoginField> LoginFields = {};
};

// Returns the first row that fits, or null.
const TPropertyRule* FindPropertyRule(std::span<const TPropertyRule> rules, std::string_view propName,
                                      std::string_view objType);

}  // namespace mig
