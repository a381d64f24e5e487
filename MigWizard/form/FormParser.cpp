#include "MigWizard/form/FormParser.h"

#include <algorithm>
#include <iterator>
#include <typeinfo>

#include "MigWizard/form/DatabaseEngineRules.h"
#include "MigWizard/form/FormGrammar.h"
#include "MigWizard/form/FormWriter.h"
#include "MigWizard/form/LoginParameters.h"
#include "rtl/text/ClassRegistry.h"
#include "rtl/text/Exceptions.h"

namespace mig {
namespace {

constexpr std::string_view kNestedObject = "<nested_obj>";
constexpr std::string_view kPropValue = "<prop_value>";
constexpr std::string_view kDelim = "\t\n\r ";

// A nonterminal whose text is kept.
struct TMarkedNonterminal {
  std::string_view Name;
  std::string_view TFormParseState::*Field;
  bool IsForAnyDepth;  // in nested objects too
};

constexpr TMarkedNonterminal kMarked[] = {
    {"<full_prop_name>", &TFormParseState::PropName, true},
    {"<obj_name>", &TFormParseState::ObjName, false},
    {"<obj_type>", &TFormParseState::ObjType, false},
    {"<keyword>", &TFormParseState::Keyword, false},
};

const TMarkedNonterminal* FindMarked(std::string_view name) {
  const auto place = std::find_if(std::begin(kMarked), std::end(kMarked),
                                  [&](const TMarkedNonterminal& marked) { return marked.Name == name; });
  return place == std::end(kMarked) ? nullptr : place;
}

}  // namespace

void TFormParseState::Assign(const TParseState& source) {
  const bool isOfThisClass = typeid(source) == typeid(TFormParseState);  // cheaper than a dynamic_cast
  const auto* from = isOfThisClass ? static_cast<const TFormParseState*>(&source)
                                   : dynamic_cast<const TFormParseState*>(&source);
  if (from == nullptr) throw rtl::EInvalidCast("TFormParseState.Assign: the source is no TFormParseState");
  TParseState::Assign(source);
  TokenStart = from->TokenStart;
  ObjType = from->ObjType;
  PropName = from->PropName;
  Keyword = from->Keyword;
  ObjName = from->ObjName;
  PropCount = from->PropCount;
  Depth = from->Depth;
  NestedCount = from->NestedCount;
  NestedStart = from->NestedStart;

  auto& parser = static_cast<TFormParser&>(Owner());
  while (parser.FProperties.size() > static_cast<size_t>(PropCount)) parser.FProperties.pop_back();
  while (parser.FNestedObjects.Count() > static_cast<size_t>(NestedCount)) parser.FNestedObjects.DeleteLast();
  // A property that ends after the position will be read again.
  const auto end = [&parser](const TSourceProperty& read) {
    return read.Value.data() + read.Value.size() - parser.Text().data();
  };
  while (!parser.FSources.empty() && end(parser.FSources.back()) > Pos - 1) parser.FSources.pop_back();
}

void TFormParseState::Reset() {
  ObjType = PropName = Keyword = ObjName = {};
  TokenStart = 0;
  PropCount = 0;
}

TFormParser::TFormParser(TParseStateClass stateClass) : TLL1Parser(std::move(stateClass)) {
  if (dynamic_cast<const TFormParseState*>(&State()) == nullptr)
    throw rtl::EInvalidCast("TFormParser: the state class is no TFormParseState");
  for (const std::string_view rule : FormGrammar()) AddRule(rule);
  DeclareWords({"end"});
  DeclareHooks({kNestedObject, kPropValue});
  for (const TMarkedNonterminal& marked : kMarked) DeclareHooks({marked.Name});
  RestrictHooksToRules();
}

void TFormParser::SetNewType(std::string_view value) {
  FNewType = value;
  FIsClassKnown = false;
}

void TFormParser::GetTerminalSet(std::string_view name, TCharSet& chars, bool& single) {
  if (name != "<*delim>") return TLL1Parser::GetTerminalSet(name, chars, single);
  chars.reset();
  for (const char c : kDelim) chars.set(static_cast<unsigned char>(c));
  single = false;
}

bool TFormParser::ParseNonterminal(std::string_view name) {
  if (name == kNestedObject) return ParseNestedObject(name);
  const TMarkedNonterminal* marked = FindMarked(name);
  if (marked == nullptr && name != kPropValue) return TLL1Parser::ParseNonterminal(name);

  TFormParseState& state = LiveState();
  state.TokenStart = state.Pos;
  if (!TLL1Parser::ParseNonterminal(name)) return false;
  const std::string_view token = Text().substr(static_cast<size_t>(state.TokenStart) - 1,
                                               static_cast<size_t>(state.Pos - state.TokenStart));
  if (marked != nullptr) {
    if (marked->IsForAnyDepth || state.Depth == 0) state.*marked->Field = token;
  } else if (!state.PropName.empty()) {
    if (state.Depth == 0) ConvertKeepingSource(state.PropName, token);
    state.PropName = {};
  }
  state.TokenStart = 0;
  return true;
}

void TFormParser::ConvertKeepingSource(std::string_view propName, std::string_view propValue) {
  if (!FKeepsSources) return ConvertProperty(propName, propValue);
  FAppliedRule = nullptr;
  const size_t countBefore = FProperties.size();
  ConvertProperty(propName, propValue);
  FSources.push_back({propName, propValue, FProperties.size() - countBefore, FAppliedRule});
}

bool TFormParser::ParseNestedObject(std::string_view name) {
  TFormParseState& state = LiveState();
  if (++state.Depth == 1) {
    // The text of the object begins with the indentation of its first line.
    state.NestedStart = state.Pos;
    while (state.NestedStart > 1 && Text()[static_cast<size_t>(state.NestedStart) - 2] == ' ')
      --state.NestedStart;
  }
  const int32_t start = state.Pos;
  const bool result = TLL1Parser::ParseNonterminal(name);
  if (--state.Depth == 0 && result) TakeNestedObject();
  if (!result) FFailedObjects.push_back(start);
  return result;
}

// Keeps the nested object that ends at the present position, without the white space after its `end`.
void TFormParser::TakeNestedObject() {
  TFormParseState& state = LiveState();
  const auto start = static_cast<size_t>(state.NestedStart) - 1;
  const std::string_view read = Text().substr(start, static_cast<size_t>(state.Pos) - 1 - start);
  FNestedObjects.Add(read.substr(0, read.find_last_not_of(kDelim) + 1));
  state.NestedStart = 0;
  ++state.NestedCount;
}

void TFormParser::BeforeParse() {
  FFailedObjects.clear();
  ClearResults();
  // An exception may have left them in the middle of an earlier parse.
  LiveState().Depth = 0;
  LiveState().NestedStart = 0;
  FIsClassKnown = false;
}

void TFormParser::AfterParse(bool& success) {
  if (!success) ClearResults();
}

void TFormParser::ClearResults() {
  LiveState().Reset();
  FProperties.clear();
  FSources.clear();
  FNestedObjects.Clear();
}

void TFormParser::ConvertProperty(std::string_view propName, std::string_view propValue) {
  if (const TPropertyRule* rule = FindPropertyRule(DatabaseEngineRules(), propName, FormState().ObjType)) {
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

void TFormParser::PrintObject(int level, std::string& text) {
  const TFormParseState& state = FormState();
  if (state.Keyword.empty() || state.ObjName.empty()) return text.clear();
  const std::string_view className = FNewType.empty() ? state.ObjType : std::string_view(FNewType);
  WriteObject({state.Keyword, state.ObjName, className, FProperties, NestedObjects()}, level, text);
}

std::string TFormParser::DescribeSubject() const {
  return "Object \"" + std::string(FormState().ObjName) + "\"";
}

}  // namespace mig
