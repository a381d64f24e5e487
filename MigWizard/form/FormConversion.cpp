// What a form parser makes of the properties of an object: the rules for the classes of the Borland Database
// Engine, and the filter that holds for every class.
#include <algorithm>
#include <string>
#include <string_view>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/form/LoginParameters.h"
#include "MigWizard/form/PropertyRules.h"
#include "rtl/text/ClassRegistry.h"

namespace mig {
namespace {

constexpr TLoginField kDatabaseLogin[] = {
    {"USER NAME", "Username"},
    {"PASSWORD", "Password"},
    {"SERVER NAME", "Server"},
};

// The first row that fits decides.
constexpr TPropertyRule kRules[] = {
    {"DatabaseName", {"TDatabase"}, TPropertyEffect::Drop},
    {"DatabaseName", {}, TPropertyEffect::Reference, "Connection"},
    {"Params.Strings", {"TDatabase"}, TPropertyEffect::Login, {}, kDatabaseLogin},
    {"DataSource", {"TQuery"}, TPropertyEffect::Rename, "MasterSource"},
    {"ParamData", {"TQuery", "TStoredProc"}, TPropertyEffect::Rename, "ParamData"},
};

// Where a component stands on its designer; never filtered.
constexpr std::string_view kDesignerProperties[] = {"Left", "Top"};

bool IsDesignerProperty(std::string_view propName) {
  return std::find(std::begin(kDesignerProperties), std::end(kDesignerProperties), propName) !=
         std::end(kDesignerProperties);
}

}  // namespace

void TFormParser::ConvertProperty(std::string_view propName, std::string_view propValue) {
  if (const TPropertyRule* rule = FindPropertyRule(kRules, propName, FormState().ObjType)) {
    ApplyRule(*rule, propName, propValue);
  } else if (IsPublished(propName) || IsDesignerProperty(propName)) {
    AddProperty(propName, propValue);
  }
}

void TFormParser::ApplyRule(const TPropertyRule& rule, std::string_view propName,
                            std::string_view propValue) {
  FAppliedRule = &rule;
  switch (rule.Effect) {
    case TPropertyEffect::Drop:
      break;
    case TPropertyEffect::Rename:
      AddProperty(rule.NewName, propValue);
      break;
    case TPropertyEffect::Reference:
      ConvertReference(rule.NewName, propName, propValue);
      break;
    case TPropertyEffect::Login:
      ConvertLogin(rule, propValue);
      break;
  }
}

void TFormParser::ConvertReference(std::string_view newName, std::string_view propName,
                                   std::string_view propValue) {
  if (!OnGetPropValue) return;
  const std::string_view unquoted =
      propValue.size() < 2 ? std::string_view() : propValue.substr(1, propValue.size() - 2);
  std::string reference = OnGetPropValue(propName, unquoted);
  if (!reference.empty()) AddMadeProperty(newName, std::move(reference));
}

void TFormParser::ConvertLogin(const TPropertyRule& rule, std::string_view propValue) {
  const TLoginParameters list(propValue);
  for (const TLoginField& field : rule.LoginFields) {
    std::string value = list.Value(field.ParameterName);
    if (!value.empty()) AddMadeProperty(field.PropName, std::move(value));
  }
}

// Whether the new class publishes the property that the name begins with. A class that is not registered
// counts as publishing everything.
bool TFormParser::IsPublished(std::string_view propName) {
  if (!FIsClassKnown) {
    FNewClass = rtl::GetClass(FNewType);
    FIsClassKnown = true;
  }
  return FNewClass == nullptr || FNewClass->HasProperty(propName.substr(0, propName.find('.')));
}

void TFormParser::AddProperty(std::string_view name, std::string_view value) {
  FProperties.emplace_back(name, value);
  TFormParserUtils::SetPropCount(LiveState(), FormState().PropCount + 1);
}

void TFormParser::AddMadeProperty(std::string_view name, std::string value) {
  FProperties.emplace_back(name, std::move(value));
  TFormParserUtils::SetPropCount(LiveState(), FormState().PropCount + 1);
}

}  // namespace mig
