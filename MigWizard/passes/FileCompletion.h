// The interface between the passes and the optional steps that complete a file after its conversion. Without
// them, a file is written exactly as the conversion produced it.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/Findings.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/TextEdits.h"
#include "qrl/Encoding.h"

namespace mig {

struct TFormToComplete {
  std::string_view FileName;  // in full
  std::string_view Text;      // before the conversion, working text
  const qrl::TEncoding& Encoding;
  const TClassMap& Classes;
  std::vector<TFormEdit> Edits;                 // of the conversion
  std::vector<TObjectConversion>* Conversions;  // or null; a step adds the objects that it converts
  // Returns True if the object, given by the offset of its keyword, has to be kept as it is, with everything
  // in it. May be empty.
  std::function<bool(size_t)> LeavesOut = nullptr;
  // The objects of mapped classes that a step cannot read: offsets of their keywords.
  std::vector<size_t> Unread = {};
};

using TFormLook = std::function<void(TFormToComplete& form, TFormParser& parser)>;

struct TUnitToComplete {
  std::string_view Text;  // before the conversion, working text
  const qrl::TEncoding& Encoding;
  const TClassMap& Classes;
  const TTextEdits& Edits;                    // of the conversion
  const std::vector<std::string>& FormFiles;  // full names of the forms that it names
  // Reads and converts those forms, and passes each to `look`, without a list of its conversions and without
  // references to connections. Forms that cannot be read are left out.
  std::function<void(const TFormLook& look)> LookAtForms;
};

// Something that the completion leaves as it is, because it is not certain. Working text.
struct TRefusal {
  std::optional<size_t> Offset;  // in the text before the conversion; without one, the first new class
  TLevel Level = TLevel::Warning;
  std::string Subject;
  std::string Detail;  // the reason
};

struct TCompletedUnit {
  std::string Text;
  TTextEdits Edits;  // of the text before the conversion; without those in uses clauses, which come after
  // Completed work, for which no findings are needed.
  bool SettlesUses = false;               // the uses clauses name the units that the unit needs, each once
  bool SettlesTransactions = false;       // each transaction is declared where it belongs, or is refused
  std::vector<std::string> RemovedUnits;  // old units, as spelled in the source
  std::vector<TRefusal> Refusals;
};

// Operations may be called by several threads at a time.
class IFileCompletion {
 public:
  virtual ~IFileCompletion() = default;
  // Return the whole text after conversion and completion. May raise. CompleteForm adds its edits to those of
  // the form. A unit is completed before its forms.
  virtual TCompletedUnit CompleteUnit(const TUnitToComplete& unit) const = 0;
  // Called for a unit that is not written, after its completion if there was one. Its forms get nothing that
  // needs a changed unit.
  virtual void OnUnitKept(const std::vector<std::string>& formFiles) const = 0;
  virtual std::string CompleteForm(TFormToComplete& form, TFormParser& parser) const = 0;
  // Returns True if objects under `inherited` and `inline` are converted.
  virtual bool ConvertsInherited() const = 0;
  // Returns True if a changed file keeps its UTF-8 mark and every written line ends as the file's lines do.
  virtual bool KeepsMarks() const = 0;
  virtual bool KeepsLineEnds() const = 0;
};

}  // namespace mig
