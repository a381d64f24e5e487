// Converts one file, from its bytes to the bytes of the changed file, in memory. The run reads and writes the
// files, and converts them ahead of its walk (MigWizard/run/FilesAhead.h).
#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/EditSelection.h"
#include "MigWizard/passes/FileCompletion.h"
#include "MigWizard/passes/FileFindings.h"
#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/FormFindings.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/NameTable.h"
#include "MigWizard/passes/OldNames.h"
#include "MigWizard/passes/TextFile.h"
#include "MigWizard/passes/UnitPass.h"
#include "MigWizard/passes/WordSearch.h"
#include "qrl/Encoding.h"

namespace mig {

// The result of converting a file, with the fields in the order in which the run reports them.
struct TFileConversion {
  size_t TrailingBytes = 0;    // of a binary form: bytes after its data, which are ignored
  std::exception_ptr Failure;  // why reading or converting failed; the fields below are not set then
  int Changes = 0;
  std::vector<std::string> FormFiles;  // of a unit: full names from its resource directives, in their order
  bool NamesNewUnits = false;          // of a unit: it may have been converted before
  bool IsChanged = false;              // the file has to be written
  bool EndsAtNul = false;              // of a form: the text after a NUL character is ignored
  // Of a form: connections to which it cannot refer because its encoding lacks their names. UTF-8, each once.
  std::vector<std::string> UnwritableNames;
  std::shared_ptr<TFileFindings> Findings;  // null if findings are not collected, or if there are no findings
  std::exception_ptr WriteFailure;          // why a changed form cannot be converted back to binary
  std::vector<TListedEdit> Edits;           // the edits that change the file, if they are listed
  std::string_view Mark;                    // the first bytes of the changed file
  std::string Bytes;                        // the rest of the changed file
};

// Converts files, one at a time.
class TFileConverter {
 public:
  // Inserts `newUnits` after `oldUnit`, a unit name in upper case, in uses clauses. Both and `classes` must
  // outlive the converter; the map must be complete before the first file is converted.
  TFileConverter(const TClassMap& classes, std::string_view oldUnit, std::string_view newUnits,
                 std::unique_ptr<TFormParser> formParser);

  // Collects findings in all following conversions. `names` must outlive the converter.
  void CollectFindings(const TOldNames& names, TFindingDetail detail = TFindingDetail::Whole);
  // Completes files in all following conversions. `completion` must outlive the converter; null disables it.
  void SetCompletion(const IFileCompletion* completion) { FCompletion = completion; }
  // Returns True if objects under `inherited` and `inline` are converted.
  bool ConvertsInherited() const { return FCompletion != nullptr && FCompletion->ConvertsInherited(); }

  // Says whether a unit that names the new units already is not written. Its forms are completed accordingly.
  void SkipConverted(bool isSkipped) { FSkipsConverted = isSkipped; }

  // Lists the edits of each file in all following conversions.
  void ListEdits(bool isListed) { FListsEdits = isListed; }

  // Converts the file with the contents `bytes`. The extension of `fileName`, a full Windows path, decides
  // whether it is a unit or a form. Raises nothing; errors are in the result.
  [[nodiscard]] TFileConversion Convert(const std::string& fileName, std::string bytes);

  // Returns the text that replaces a class name in a unit's source. If unset, it is the new class.
  std::function<std::string(std::string_view oldClass, std::string_view newClass)> OnGetReplacement;
  // Returns the reference that replaces a form's database alias, as a name of the run (ComponentNames.h), or
  // an empty string if there is none. `alias` is working text in `encoding`.
  std::function<std::string(std::string_view alias, const qrl::TEncoding& encoding)> OnGetDatabase;
  // The same for the component that declares the alias and is not converted because it is inherited. Only
  // findings ask for it. May be unset.
  std::function<std::string(std::string_view alias, const qrl::TEncoding& encoding)> OnGetInheritedDatabase;
  // Returns the bytes of a form that a unit names, for the completion of the unit. Raises an exception if it
  // cannot be read. Unset if no form can be read.
  std::function<std::string(const std::string& fileName)> OnReadForm;
  // Returns the edits of a file to leave out, or null if there are none. A file without any other edit is not
  // changed, not even by its completion.
  std::function<const TEditSelection*(const std::string& fileName)> OnGetSelection;

 private:
  bool MayMatter(std::string_view unitText) const;
  void ConvertUnitFile(const std::string& fileName, std::string bytes, TFileConversion& result);
  void FindInUnitFile(const TTextFile& unit, const TUnitResult& converted,
                      const std::vector<std::string_view>& directives, const TCompletedUnit* completed,
                      TFileConversion& result);
  void ConvertFormFile(const std::string& fileName, std::string bytes, TFileConversion& result);
  const TFormClasses& ReportedClasses();
  void FindInFormFile(std::string_view text, const TFormFile& form, TPrintedFile& printed,
                      const TFormOutline& outline, const std::vector<TObjectConversion>& conversions,
                      const std::vector<size_t>& unread, bool replacesClasses, TFileConversion& result);
  const TEditSelection* SelectIn(TFormToComplete& form) const;
  void LookAtForms(const std::vector<std::string>& formFiles, const TFormLook& look);
  std::string DatabaseReference(std::string_view alias);

  const TUnitRules FUnitRules;
  const TClassMap& FClasses;
  TWordSearch FOldUnit;
  std::unique_ptr<TFormParser> FFormParser;
  const IFileCompletion* FCompletion = nullptr;
  bool FSkipsConverted = false;
  bool FListsEdits = false;
  const TOldNames* FOldNames = nullptr;  // null: no findings are collected
  // Made for the first unit, and for the first form, if findings are collected.
  std::optional<TNameTable> FUnitNames;
  std::optional<TFormClasses> FReportedClasses;
  TFindingDetail FDetail = TFindingDetail::Whole;
  bool FReadsInterfaces = false;   // a unit has a name that other units may declare
  bool FRefersToDatabases = true;  // not in a form that is looked at for its unit
  const qrl::TEncoding* FFormEncoding = &qrl::TEncoding::Default();  // of the form being converted
  std::vector<std::string> FUnwritableNames;                         // in that form
  std::vector<std::string> FUnwritableAliases;                       // their aliases, as spelled in that form
};

}  // namespace mig
