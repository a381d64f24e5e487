// The findings of one file, ready to be shown: with lines and columns, and in UTF-8.
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
  std::vector<TTextPlace> FormPlaces;      // of a unit: where its form files are named, in their order
  bool IsBinary = false;
  std::string_view Encoding = "source code page";  // "UTF-8", "UTF-16"
};

// Gives the findings lines and columns of `text`, and makes UTF-8 of their texts. `text` is working text.
void PlaceFindings(std::vector<TFinding>& findings, const TTextPlaces& places,
                   const qrl::TEncoding& encoding);
// The same with places in what the binary form `file` is printed as. Raises what ObjectBinaryToText raises.
void PlaceInPrintedForm(std::vector<TFinding>& findings, std::string_view text, std::string_view file);

// Makes UTF-8 of the names in an outline.
void ConvertNames(TUnitOutline& outline, const qrl::TEncoding& encoding);

}  // namespace mig
