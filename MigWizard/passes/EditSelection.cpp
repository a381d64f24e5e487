#include "MigWizard/passes/EditSelection.h"

#include <algorithm>
#include <utility>

#include "MigWizard/passes/FileFindings.h"
#include "MigWizard/passes/Findings.h"
#include "MigWizard/passes/FormWalk.h"
#include "MigWizard/passes/TextPlaces.h"

namespace mig {
namespace {

// Names the objects of edits.
class TEditNames : public TFormWalk {
 public:
  TEditNames(std::string_view text, const qrl::TEncoding& encoding, const TClassMap& classes,
             std::vector<TFinding>& edits)
      : TFormWalk(text, encoding), FClasses(classes), FEdits(edits) {}

 private:
  void OnObject(const TWalkedObject& object) override {
    while (FNext < FEdits.size() && FEdits[FNext].Offset < object.Offset) ++FNext;
    if (FNext == FEdits.size() || FEdits[FNext].Offset != object.Offset) return;
    TFinding& edit = FEdits[FNext];
    edit.Object = Path();
    edit.OldClass = object.ClassName;
    if (const std::string* const newClass = FClasses.Find(object.ClassName)) edit.NewClass = *newClass;
  }
  void OnProperty(const TWalkedProperty&) override {}
  bool WantsProperties() const override { return false; }
  void OnObjectEnd() override {}

  const TClassMap& FClasses;
  std::vector<TFinding>& FEdits;
  size_t FNext = 0;
};

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
                                       const TClassMap& classes, const std::vector<TFormEdit>& edits,
                                       std::string_view binaryForm) {
  std::vector<TFinding> found;
  std::vector<size_t> places;
  for (const TFormEdit& edit : edits) {
    places.push_back(edit.Place);
    found.push_back(At(edit.Place));
  }
  if (found.empty()) return {};
  TEditNames(text, encoding, classes, found).Run();
  if (binaryForm.empty()) {
    PlaceFindings(found, TTextPlaces(text, encoding), encoding);
  } else {
    PlaceInPrintedForm(found, text, binaryForm);
  }
  return Listed(places, found);
}

}  // namespace mig
