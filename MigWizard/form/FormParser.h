// The parser and printer of one object block of a form.
//
//   TFormParser parser(ParseStateClass<TFormParseState>());
//   const std::string text = "object Query1: TQuery Active = True end";
//   int64_t position = 1;  // of the block's keyword
//   std::string printed;
//   parser.SetNewType("TNewQuery");
//   if (parser.Parse(text, "<object>", position)) parser.PrintObject(0, printed);
//   // printed is "object Query1: TNewQuery\r\n  Active = True\r\nend\r\n"
//
// A parse collects the block's keyword, name and class, its own properties as ConvertProperty adds them, and
// the raw texts of the objects nested in it. Nothing else of the block reaches the printed text. All results
// view the parsed text, which must not change while they are in use.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/engine/LL1Parser.h"
#include "MigWizard/form/FormResults.h"

namespace rtl {
class TClassInfo;
}

namespace mig {

struct TPropertyRule;

// The state of a parse. Texts are views of the parsed text.
class TFormParseState : public TParseState {
 public:
  using TParseState::TParseState;

  // Also shortens the owner's lists to the counts. Raises EInvalidCast unless `source` is of this class.
  void Assign(const TParseState& source) override;
  // Resets all fields to the start of a parse, except for Depth, NestedStart and NestedCount.
  void Reset();

  int32_t PropCount = 0;      // how many of the owner's properties belong to the parse up to here
  int32_t TokenStart = 0;     // where the open marked nonterminal began, counted from 1, or 0
  std::string_view ObjType;   // class name of the outermost object, spelled as in the text
  std::string_view PropName;  // the property whose value comes next; empty outside a property
  std::string_view Keyword;   // of the outermost object
  std::string_view ObjName;   // of the outermost object
  int32_t Depth = 0;          // open nested objects
  int32_t NestedCount = 0;    // nested objects taken, over all parses
  int32_t NestedStart = 0;  // where the open nested object began, with its indentation, counted from 1, or 0
};

class TFormParser : public TLL1Parser {
 public:
  // Raises EInvalidCast unless `stateClass` makes TFormParseState objects.
  explicit TFormParser(TParseStateClass stateClass);

  // Sets the class that PrintObject prints and whose published properties decide what is kept; empty for the
  // class of the text. Stays in force until it is set again. Must be set again after a change of the class
  // registry.
  void SetNewType(std::string_view value);

  // Returns the reference that replaces a property's value, which comes without its quotes; empty for none.
  // Not called unless assigned.
  std::function<std::string(std::string_view propName, std::string_view propValue)> OnGetPropValue;

  // Converts a property of the outermost object: adds no, one or more entries to Properties. May be called
  // again for the same property, and must have no other effect. `propName` is the full name. `propValue` is
  // the text of the value, with white space before it only if it is a concatenation. Both are views of the
  // parsed text.
  virtual void ConvertProperty(std::string_view propName, std::string_view propValue);

  // Sets `text` to the converted object, each line with CR LF after it, for nesting level `level`: 0 for the
  // root of a form. Call it once, after a Parse that returned True: it indents the lines of each value from
  // the second on, in Properties too. After a Parse that returned False, `text` becomes empty.
  virtual void PrintObject(int level, std::string& text);

  // Makes each parse from now on keep the properties of the source.
  void KeepSources() { FKeepsSources = true; }
  // Returns the properties of the outermost object in the source, in their order; empty without KeepSources.
  const std::vector<TSourceProperty>& Sources() const { return FSources; }

  const std::vector<TFormProperty>& Properties() const { return FProperties; }
  const std::vector<std::string_view>& NestedObjects() const { return FNestedObjects.Texts(); }
  // Returns positions, counted from 1, where the last Parse tried to read a nested object and found none.
  // Parsing `<object>` there, in the same text, fails again.
  const std::vector<int32_t>& FailedObjects() const { return FFailedObjects; }
  const TFormParseState& FormState() const { return static_cast<const TFormParseState&>(State()); }

 protected:
  void GetTerminalSet(std::string_view name, TCharSet& chars, bool& single) override;
  bool ParseNonterminal(std::string_view name) override;
  void BeforeParse() override;
  void AfterParse(bool& success) override;
  std::string DescribeSubject() const override;

  // Append an entry to Properties, and count it. The first keeps views, of the parsed text or of constants;
  // the second takes over the value.
  void AddProperty(std::string_view name, std::string_view value);
  void AddMadeProperty(std::string_view name, std::string value);
  // Adds the entries that the rule makes of the property.
  void ApplyRule(const TPropertyRule& rule, std::string_view propName, std::string_view propValue);

 private:
  friend class TFormParseState;

  TFormParseState& LiveState() const { return static_cast<TFormParseState&>(State()); }
  bool ParseNestedObject(std::string_view name);
  void TakeNestedObject();
  void ClearResults();
  void ConvertReference(std::string_view newName, std::string_view propName, std::string_view propValue);
  void ConvertLogin(const TPropertyRule& rule, std::string_view propValue);
  bool IsPublished(std::string_view propName);
  void ConvertKeepingSource(std::string_view propName, std::string_view propValue);

  TNestedObjects FNestedObjects;
  std::vector<int32_t> FFailedObjects;
  std::string FNewType;
  std::vector<TFormProperty> FProperties;
  std::vector<TSourceProperty> FSources;
  const TPropertyRule* FAppliedRule = nullptr;  // of the property that is being converted, or null
  bool FKeepsSources = false;
  const rtl::TClassInfo* FNewClass = nullptr;  // of FNewType; null if it is not registered
  bool FIsClassKnown = false;                  // FNewClass has been looked up
};

// A class of form parsers: makes a parser.
using TFormParserClass = std::function<std::unique_ptr<TFormParser>(TParseStateClass stateClass)>;

// Access to a state for code that adds to Properties from outside of the parser.
class TFormParserUtils {
 public:
  TFormParserUtils() = delete;
  static void SetPropCount(TFormParseState& state, int32_t value) { state.PropCount = value; }
};

}  // namespace mig
