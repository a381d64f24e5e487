// The findings of one file, ready for display: with lines and columns, and in UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
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
  // The interface section of a unit whose declarations are not in the outline, and otherwise empty. A run reads it
  // only if a name of another unit has to be resolved.
  std::string Interface;
  const qrl::TEncoding* InterfaceEncoding = nullptr;
  std::vector<TTextPlace> FormPlaces;  // of a unit: places of the names of its form files, in their order
  bool IsBinary = false;
  std::string_view Encoding = "source code page";  // "UTF-8", "UTF-16"
};

// Sets line and column of `findings` from their offsets in `text`, which is working text, and converts their
// texts to UTF-8.
void PlaceFindings(std::vector<TFinding>& findings, const TTextPlaces& places,
                   const qrl::TEncoding& encoding);
// The same for places in the printed text of the binary form `file`. Raises what ObjectBinaryToText raises.
void PlaceInPrintedForm(std::vector<TFinding>& findings, std::string_view text, std::string_view file);

// Converts the names in `outline` to UTF-8.
void ConvertNames(TUnitOutline& outline, const qrl::TEncoding& encoding);

}  // namespace mig
