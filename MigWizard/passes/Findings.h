// Findings: what a run did to a file, and what is left to do by hand, as values.
//
// The passes derive findings from their input alone. A finding holds an offset in the working text until the
// file is done; then it gets line and column, and its texts are converted to UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
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
  Deselected,
  NotCompleted,
};

// How much of findings is collected.
enum class TFindingDetail : uint8_t {
  // Only what a summary counts: rule, level, kind of property, and the names by which it counts. A finding
  // can stand for several.
  Counts,
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
  size_t Count = 1;      // how many findings it stands for; more than 1 only in TFindingDetail::Counts
};

// The number of converted objects of one class in a form.
struct TConvertedClass {
  std::string OldClass, NewClass;
  size_t Count = 0;
};

// Merges each finding from the index `first` on with an equal one near before it, if there is one. Equal ones
// count alike. For findings in TFindingDetail::Counts.
void MergeEqual(std::vector<TFinding>& findings, size_t first);

}  // namespace mig
