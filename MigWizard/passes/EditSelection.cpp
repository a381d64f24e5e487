#include "MigWizard/passes/EditSelection.h"

#include <algorithm>
#include <utility>

#include "MigWizard/passes/FileFindings.h"
#include "MigWizard/passes/Findings.h"
#include "MigWizard/passes/TextPlaces.h"

namespace mig {
namespace {

// Names the object of an edit.
void NameObject(const TFormOutline& outline, const TClassMap& classes, TFinding& edit) {
  const std::vector<TFormOutline::TObject>& objects = outline.Objects();
  const auto object =
      std::lower_bound(objects.begin(), objects.end(), edit.Offset,
                       [](const TFormOutline::TObject& each, size_t offset) { return each.Offset < offset; });
  if (object == objects.end() || object->Offset != edit.Offset) return;
  edit.Object = outline.PathOf(static_cast<int32_t>(object - objects.begin()));
  edit.OldClass = object->ClassName;
  if (const std::string* const newClass = classes.Find(object->ClassName)) edit.NewClass = *newClass;
}

// Findings are placed and converted to UTF-8 by the same functions. `edits` have been placed.
std::vector<TListedEdit> Listed(const std::vector<size_t>& places, std::vector<TFinding>& edits) {
  std::vector<TListedEdit> list;
  list.reserve(edits.size());
  for (size_t i = 0; i < edits.size(); ++i) {
    TFinding& edit = edits[i];
    list.push_back({places[i], edit.Line, edit.Column, std::move(edit.Object), std::move(edit.OldClass),
                    std::move(edit.NewClass)});
  }
  return list;
}

TFinding At(size_t place) {
  TFinding edit;
  edit.Offset = place;
  return edit;
}

}  // namespace

std::vector<TListedEdit> ListUnitEdits(std::string_view text, const qrl::TEncoding& encoding,
                                       const TClassMap& classes, const TTextEdits& edits) {
  std::vector<TFinding> found;
  std::vector<size_t> places;
  for (const TTextEdits::TEdit& edit : edits.Edits()) {
    places.push_back(edit.Position);
    TFinding& finding = found.emplace_back(At(edit.Position));
    finding.OldClass = text.substr(edit.Position, edit.Length);
    const std::string* const newClass = classes.Find(finding.OldClass);
    finding.NewClass = newClass != nullptr ? *newClass : edit.Replacement;
  }
  PlaceFindings(found, TTextPlaces(text, encoding), encoding);
  return Listed(places, found);
}

std::vector<TListedEdit> ListFormEdits(std::string_view text, const qrl::TEncoding& encoding,
                                       const TClassMap& classes, const TFormOutline& outline,
                                       const std::vector<TFormEdit>& edits, TPrintedFile& printed) {
  std::vector<TFinding> found;
  std::vector<size_t> places;
  for (const TFormEdit& edit : edits) {
    places.push_back(edit.Place);
    NameObject(outline, classes, found.emplace_back(At(edit.Place)));
  }
  if (found.empty()) return {};
  if (printed.IsBinary()) {
    PlaceInPrintedForm(found, text, printed);
  } else {
    PlaceFindings(found, TTextPlaces(text, encoding), encoding);
  }
  return Listed(places, found);
}

}  // namespace mig
