// The layout of a form as rows of controls, independent of any toolkit. A front end gives the rows their
// positions.
//
// Controls follow each other in tab order, one per row, except those with another place (TPlace). Lengths are
// in device-independent pixels.
#pragma once

#include <span>
#include <vector>

#include "rtl/forms/Controls.h"

namespace rtl {

class TForm;

inline constexpr int kRowIndent = 22;  // about the width of a check mark
inline constexpr int kRowGap = 10;
inline constexpr int kRowSpacing = 6;
inline constexpr int kFormMargin = 14;
inline constexpr int kVisibleEntries = 6;  // minimum height of a list or a scroll box, in lines of text

// Controls side by side. All have the place of the first one.
struct TFormRow {
  std::span<TControl* const> Controls;
  const TPlace& Place() const { return Controls.front()->Place(); }
  // Returns whether the row takes remaining height.
  bool Grows() const;
  // Returns whether the control at `index` takes the remaining width. Of labels, only the last one does. If
  // none does, the controls are on the left.
  bool Widens(size_t index) const;
};

// Returns the rows of `controls`, which must outlive the result.
std::vector<TFormRow> RowsOf(const std::vector<TControl*>& controls);

// The controls of the form itself, by their part of the window: pictures to the left of the body, and below a
// line across the window the buttons, in one row on the right.
struct TFormParts {
  explicit TFormParts(const TForm& form);
  std::vector<TControl*> Pictures;
  std::vector<TControl*> Body;
  TControl* Line = nullptr;  // null if the form has none
  std::vector<TControl*> Buttons;
};

}  // namespace rtl
