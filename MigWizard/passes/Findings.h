// Findings: what a run did to a file, and what is left to do by hand, as values.
//
// The passes derive findings from their input alone. A finding holds an offset in the working text until the
// file is done; then it gets line and column, and its texts are converted to UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

enum class TLevel : uint8_t { Note, Warning, Error };

// In the order of the table in FindingRules.cpp.
enum class TRuleId : uint8_t {
  DroppedProperty,
  DroppedLoginEntry,
  LostConnection,
  OrderBecameDetail,
  OldValue,
  UnparsedObject,
  InheritedObject,
  NestedObject,
  UnmappedClass,
  NoPublishedList,
  FormNotInRun,
  MissingForm,
  LostMark,
  MixedLineEnds,
  NoNewUnits,
  DoubledUnits,
  SecondConversion,
  OldUnit,
  TransactionLine,
  OldClass,
  OldCall,
  OldMember,
  ChangedText,
};

// How much of findings is collected.
enum class TFindingDetail : uint8_t {
  Counts,  // only what a summary counts: rule, level, kind of property, and the names by which it counts
  Whole,
};

// A finding. Texts that do not apply are empty.
struct TFinding {
  TRuleId Rule = TRuleId::DroppedProperty;
  TLevel Level = TLevel::Warning;
  size_t Offset = 0;    // bytes from 0 in the working text
  uint32_t Line = 1;    // in the file before the run, from 1
  uint32_t Column = 1;  // in characters, from 1
  std::string Object;   // path of the form's object, "DM.QMembers"
  std::string OldClass, NewClass;
  std::string Subject;  // the property, unit, member, ... that the finding is about
  std::string Value;    // its old value
  std::string Detail;   // completes the message
  std::string Advice;   // replaces the rule's advice
  // The source line before and after the run, shortened as values are; empty if the line was removed.
  std::string Before, After;
  bool IsEvent = false;  // the property is an event handler
};

// The number of converted objects of one class in a form.
struct TConvertedClass {
  std::string OldClass, NewClass;
  size_t Count = 0;
};

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
