// What a run makes of one file: from its bytes to the bytes of the changed file, in memory and nowhere else.
// The run driver reads and writes the files, and has this done ahead of itself (MigWizard/FilesAhead.h).
#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/UnitPass.h"
#include "MigWizard/passes/WordSearch.h"
#include "qrl/Encoding.h"

namespace mig {

// What happened to a file, in the order in which the driver tells of it.
struct TFileConversion {
  size_t TrailingBytes = 0;    // of a binary form: they stand behind its data and are no part of it
  std::exception_ptr Failure;  // why the file could not be read or converted; nothing below is set then
  int Changes = 0;
  std::vector<std::string> FormFiles;  // of a unit: full names from its resource directives, in their order
  bool IsChanged = false;              // what follows is to be written
  bool EndsAtNul = false;              // of a form: what stands behind a NUL character is no part of it
  // Of a form: connections that it would refer to if its encoding had their names. UTF-8, each once.
  std::vector<std::string> UnwritableNames;
  std::exception_ptr WriteFailure;  // why a changed form cannot be made a binary one again
  std::string_view Mark;            // the first bytes of the changed file
  std::string Bytes;                // and those behind them
};

// Converts files, one at a time.
class TFileConverter {
 public:
  // `newUnits` goes behind the unit `oldUnit` (in upper case) of a uses clause. Both must live as long, and
  // so must `classes`; the map must be complete when the first file comes.
  TFileConverter(const TClassMap& classes, std::string_view oldUnit, std::string_view newUnits,
                 std::unique_ptr<TFormParser> formParser);

  // `fileName` is the full Windows path of the file whose bytes these are; its extension tells what they are.
  // Raises nothing.
  [[nodiscard]] TFileConversion Convert(const std::string& fileName, std::string bytes);

  // The text that stands in a unit's source in place of a class name; unset: the new class.
  std::function<std::string(std::string_view oldClass, std::string_view newClass)> OnGetReplacement;
  // Gives the reference that takes the place of a form's database alias, as a name of the run
  // (ComponentNames.h); empty for none. `alias` is working text in `encoding`.
  std::function<std::string(std::string_view alias, const qrl::TEncoding& encoding)> OnGetDatabase;

 private:
  bool MayMatter(std::string_view unitText) const;
  void ConvertUnitFile(const std::string& fileName, std::string bytes, TFileConversion& result) const;
  void ConvertFormFile(std::string bytes, TFileConversion& result);
  std::string DatabaseReference(std::string_view alias);

  const TUnitRules FUnitRules;
  const TClassMap& FClasses;
  TWordSearch FOldUnit;
  std::unique_ptr<TFormParser> FFormParser;
  const qrl::TEncoding* FFormEncoding = &qrl::TEncoding::Default();  // of the form being converted
  std::vector<std::string> FUnwritableNames;                         // in that form
};

}  // namespace mig
