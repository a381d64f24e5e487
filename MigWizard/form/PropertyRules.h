// What becomes of single properties, as rows of a table.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace mig {

// An entry of a list of login parameters, and the property that takes its value.
struct TLoginField {
  std::string_view ParameterName;  // in any case of letters
  std::string_view PropName;
};

enum class TPropertyEffect {
  Drop,       // it is left out
  Rename,     // it is printed as NewName, with its value as it stands
  Reference,  // printed as NewName with what OnGetPropValue gives for its value; left out if that is nothing
  Login,      // printed as one property for each of LoginFields that its list has a value for, in that order
};

struct TPropertyRule {
  std::string_view PropName;                 // exactly so
  std::array<std::string_view, 4> ObjTypes;  // exactly one of these; for every class if the first is empty
  TPropertyEffect Effect;
  std::string_view NewName = {};
  std::span<const TLoginField> LoginFields = {};
};

// The first row that fits, or null.
const TPropertyRule* FindPropertyRule(std::span<const TPropertyRule> rules, std::string_view propName,
                                      std::string_view objType);

}  // namespace mig
