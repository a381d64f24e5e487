// The parser of one object block of a form, and its printer.
//
//   parser.SetNewType("TNewClass");
//   int64_t position = start;                                    // of the block's keyword
//   if (parser.Parse(text, "<object>", position)) parser.PrintObject(level, printed);
//
// A parse gathers the block's keyword, name and class, its own properties as ConvertProperty hands them on,
// and the raw texts of the objects nested in it. Nothing else of the block reaches the printed text. All
// results view the parsed text, which has to stay as it is until they are no longer needed.
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

// Every result that is a text is a view of the parsed text.
class TFormParseState : public TParseState {
 public:
  using TParseState::TParseState;

  // Cuts the owner's lists to the counts. Raises EInvalidCast unless `source` is of this class.
  void Assign(const TParseState& source) override;
  // Back to the start of a parse, but for Depth, NestedStart and NestedCount.
  void Reset();

  int32_t PropCount = 0;      // how many of the owner's properties belong to the parse up to here
  int32_t TokenStart = 0;     // where the marked nonterminal under way began, or 0
  std::string_view ObjType;   // of the outermost object, as its text spells it
  std::string_view PropName;  // the property whose value is to come
  std::string_view Keyword;   // of the outermost object
  std::string_view ObjName;   // of the outermost object
  int32_t Depth = 0;          // nested objects under way
  int32_t NestedCount = 0;    // nested objects taken, over all parses
  int32_t NestedStart = 0;    // where the nested object under way began, with its indentation, or 0
};

class TFormParser : public TLL1Parser {
 public:
  // `stateClass` makes TFormParseState objects, or EInvalidCast is raised.
  explicit TFormParser(TParseStateClass stateClass);

  // The class that PrintObject names; empty for that of the text. Stays until it is set again, and says whose
  // published properties decide what is kept. To be set again after a change of the class registry.
  void SetNewType(std::string_view value);
  const std::string& NewType() const { return FNewType; }

  // Gives the reference that takes the place of a property's value, which comes without its quotes; empty for
  // none. Not called unless assigned.
  std::function<std::string(std::string_view propName, std::string_view propValue)> OnGetPropValue;

  // Decides what becomes of a property of the outermost object: adds none, one or more entries to Properties.
  // It may be called again for the same property, and must have no other effect. `propName` is the full name,
  // `propValue` the text of the value, with white space in front only if it is a concatenation; both are
  // views of the parsed text.
  virtual void ConvertProperty(std::string_view propName, std::string_view propValue);

  // Sets `text` to the converted object, each line with CR LF behind it, for nesting level `level`: 0 for the
  // root of a form. Once after each Parse that was True. The lines of a value from the second on are moved to
  // the right, in Properties too. After a Parse that was False, the text is empty.
  virtual void PrintObject(int level, std::string& text);

  // Makes each parse keep the properties of the source from now on. They are not kept unless asked for.
  void KeepSources() { FKeepsSources = true; }
  // The source's own properties of the object, in their order.
  const std::vector<TSourceProperty>& Sources() const { return FSources; }

  const std::vector<TFormProperty>& Properties() const { return FProperties; }
  const std::vector<std::string_view>& NestedObjects() const { return FNestedObjects.Texts(); }
  // Where the last Parse tried to read a nested object and found none, counted from 1: to parse `<object>`
  // there, in the same text, will fail again.
  const std::vector<int32_t>& FailedObjects() const { return FFailedObjects; }
  const TFormParseState& FormState() const { return static_cast<const TFormParseState&>(State()); }

 protected:
  void GetTerminalSet(std::string_view name, TCharSet& chars, bool& single) override;
  bool ParseNonterminal(std::string_view name) override;
  void BeforeParse() override;
  void AfterParse(bool& success) override;
  std::string DescribeSubject() const override;

  // Add an entry at the end of Properties, and count it. The first keeps views: of the parsed text or of
  // constants.
  void AddProperty(std::string_view name, std::string_view value);
  void AddMadeProperty(std::string_view name, std::string value);
  // Does what the rule says.
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
  const TPropertyRule* FAppliedRule = nullptr;  // for the property under way
  bool FKeepsSources = false;
  const rtl::TClassInfo* FNewClass = nullptr;  // that of FNewType, once it has been looked up
  bool FIsClassKnown = false;
};

// A class of form parsers, for whoever makes one without knowing which.
using TFormParserClass = std::function<std::unique_ptr<TFormParser>(TParseStateClass stateClass)>;

// For those who fill Properties from outside of the parser.
class TFormParserUtils {
 public:
  TFormParserUtils() = delete;
  static void SetPropCount(TFormParseState& state, int32_t value) { state.PropCount = value; }
};

}  // namespace mig
