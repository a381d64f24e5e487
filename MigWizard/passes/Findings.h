// What a run did to a file, and what it left to be done by hand, as values.
//
// The passes make findings of their input alone. A finding has its place as an offset in the working text until
// the file is done; then it gets line and column, and its texts become UTF-8.
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

// A text that is empty has nothing to say.
struct TFinding {
  TRuleId Rule = TRuleId::DroppedProperty;
  TLevel Level = TLevel::Warning;
  size_t Offset = 0;    // bytes from 0 in the working text
  uint32_t Line = 1;    // in the file before the run, from 1
  uint32_t Column = 1;  // in characters, from 1
  std::string Object;   // path of a form's object, "DM.QMembers"
  std::string OldClass, NewClass;
  std::string Subject;  // the property, unit, member, ... that the finding is about
  std::string Value;    // what it was
  std::string Detail;   // completes the message
  std::string Advice;   // in place of the rule's
  // The source line before the run and after it, shortened as values are; empty if the line is gone.
  std::string Before, After;
  bool IsEvent = false;  // the property is an event handler
};

// Objects of a form that were converted, by class.
struct TConvertedClass {
  std::string OldClass, NewClass;
  size_t Count = 0;
};

// A rule of the table.
struct TRule {
  TRuleId Id;
  std::string_view Name;     // "dropped-property"
  TLevel Level;              // the usual one; single findings may differ
  std::string_view Message;  // with {object} {oldClass} {newClass} {subject} {value} {detail}
  std::string_view Advice;
  std::string_view About;    // a paragraph for the documentation
  std::string_view Example;  // lines of source
};

const TRule& RuleOf(TRuleId id);
const std::vector<TRule>& Rules();
std::string_view LevelName(TLevel level);  // "error", "warning", "note"

// The finding as a sentence without a full stop, and what to do about it.
std::string MessageOf(const TFinding& finding);
std::string AdviceOf(const TFinding& finding);

// Whether a value under that name could be a secret, or the value itself shows one. Both are working text.
bool CouldBeSecret(std::string_view name, std::string_view value);
// A value or a source line as a finding carries it: on one line, at most 200 bytes, and "(withheld)" where it could be a secret.
std::string ShownValue(std::string_view name, std::string_view value);

}  // namespace mig
