// The findings of one file, ready for display: with lines and columns, and in UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MigWizard/passes/Findings.h"
#include "MigWizard/passes/TextPlaces.h"
#include "MigWizard/passes/UnitOutline.h"
#include "qrl/Encoding.h"

namespace mig {

struct TFileFindings {
  std::vector<TFinding> Findings;          // in the order of the file
  std::vector<TConvertedClass> Converted;  // of a form
  size_t MappedObjects = 0;                // of a form: objects of classes of the map
  std::optional<TUnitOutline> Outline;     // of a unit
  // The interface section of a unit whose declarations are not in the outline, and otherwise empty. A run
  // reads it only if a name of another unit has to be resolved.
  std::string Interface;
  const qrl::TEncoding* InterfaceEncoding = nullptr;
  std::vector<TTextPlace> FormPlaces;  // of a unit: places of the names of its form files, in their order
  bool IsBinary = false;
  std::string_view Encoding = "source code page";  // "UTF-8", "UTF-16"
};

// Converts the texts of `findings` to UTF-8.
void ConvertTexts(std::vector<TFinding>& findings, const qrl::TEncoding& encoding);
// Sets line and column of `findings` from their offsets in `text`, which is working text, and converts their
// texts to UTF-8.
void PlaceFindings(std::vector<TFinding>& findings, const TTextPlaces& places,
                   const qrl::TEncoding& encoding);

// The text of a binary form as `form to-text` prints it, which has other lines than the text in memory.
class TPrintedFile {
 public:
  // `bytes` is the file of a binary form, or empty for any other form.
  explicit TPrintedFile(std::string bytes) : FBytes(std::move(bytes)) {}

  bool IsBinary() const { return !FBytes.empty(); }
  // Prints the form at the first call. Raises the exceptions of ObjectBinaryToText.
  const std::string& Text();

 private:
  const std::string FBytes;
  std::string FText;
};

// PlaceFindings for a binary form, in its printed text. `text` is the text in memory.
void PlaceInPrintedForm(std::vector<TFinding>& findings, std::string_view text, TPrintedFile& file);

// Converts the names in `outline` to UTF-8.
void ConvertNames(TUnitOutline& outline, const qrl::TEncoding& encoding);

}  // namespace mig
