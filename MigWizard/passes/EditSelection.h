// The edits of one file as a list to choose from, and a choice of them.
//
// An edit is identified by its place: the offset, in bytes from 0, in the file's working text before the
// conversion. For a form it is the offset of the object's keyword, for a unit that of the replaced name. The
// objects inside a converted object belong to its edit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/FileFindings.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/TextEdits.h"
#include "qrl/Encoding.h"

namespace mig {

// Texts are UTF-8.
struct TListedEdit {
  size_t Place = 0;
  uint32_t Line = 1;    // in the file before the run, from 1; of a binary form as `form to-text` prints it
  uint32_t Column = 1;  // in characters, from 1
  std::string Object;   // of a form: the path of the object, "DM.QMembers"
  std::string Before, After;  // the old and the new class, or the replaced and the new text
};

// Lists the edits of a unit, and those of a form. `text` is working text, `outline` has the form's objects.
std::vector<TListedEdit> ListUnitEdits(std::string_view text, const qrl::TEncoding& encoding,
                                       const TClassMap& classes, const TTextEdits& edits);
std::vector<TListedEdit> ListFormEdits(std::string_view text, const qrl::TEncoding& encoding,
                                       const TClassMap& classes, const TFormOutline& outline,
                                       const std::vector<TFormEdit>& edits, TPrintedFile& printed);

// Which edits of a file to leave out. By default none.
class TEditSelection {
 public:
  void LeaveOut(size_t place) { FPlaces.insert(place); }
  void LeaveOutAll() { FLeavesOutAll = true; }

  bool LeavesOut(size_t place) const { return FLeavesOutAll || FPlaces.contains(place); }
  bool LeavesOutAll() const { return FLeavesOutAll; }

 private:
  std::unordered_set<size_t> FPlaces;
  bool FLeavesOutAll = false;
};

}  // namespace mig
