#include "native/FormLayout.h"

#include <algorithm>

namespace native {

using rtl::TControlKind;
using rtl::TFormRow;

// --- Sizes ---

int TFormLayout::MinimumWidth(const rtl::TControl& control, bool widens) const {
  const int own = control.Place().Width * FMetrics.CharWidth();
  if (!control.Controls().empty()) return std::max(own, MinimumWidth(control.Controls()));
  return widens ? own : static_cast<int>(FWindowOf(control).Measure(FMetrics, 0).cx);
}

int TFormLayout::MinimumWidth(const TControls& controls) const {
  int result = 0;
  for (const TFormRow& row : rtl::RowsOf(controls)) {
    int width = row.Place().Indented ? FMetrics.Scale(rtl::kRowIndent) : 0;
    for (size_t i = 0; i < row.Controls.size(); ++i) {
      width += MinimumWidth(*row.Controls[i], row.Widens(i)) + (i > 0 ? FMetrics.Scale(rtl::kRowSpacing) : 0);
    }
    result = std::max(result, width);
  }
  return result;
}

int TFormLayout::Height(const rtl::TControl& control, int width) const {
  int height = 0;
  if (control.Kind() == TControlKind::PageControl) {
    for (const rtl::TControl* page : control.Controls())
      height = std::max(height, Height(page->Controls(), width));
  } else if (control.Controls().empty()) {
    height = static_cast<int>(FWindowOf(control).Measure(FMetrics, width).cy);
  } else {
    height = Height(control.Controls(), width);
  }
  return std::max(height, FMetrics.Scale(control.Place().Height));
}

int TFormLayout::Height(const TControls& controls, int width) const {
  int height = 0;
  for (const TSizedRow& row : SizedRows(controls, width)) height += row.SpaceAbove + row.Height;
  return height;
}

// Returns the sizes of the controls of a row that has the width `width`.
std::vector<SIZE> TFormLayout::Sizes(const TFormRow& row, int width) const {
  int rest = width - (row.Place().Indented ? FMetrics.Scale(rtl::kRowIndent) : 0);
  int widening = 0;
  std::vector<SIZE> sizes(row.Controls.size());
  for (size_t i = 0; i < sizes.size(); ++i) {
    if (i > 0) rest -= FMetrics.Scale(rtl::kRowSpacing);
    if (row.Widens(i)) {
      ++widening;
    } else {
      sizes[i].cx = MinimumWidth(*row.Controls[i], false);
      rest -= static_cast<int>(sizes[i].cx);
    }
  }
  for (size_t i = 0; i < sizes.size(); ++i) {
    if (row.Widens(i)) sizes[i].cx = std::max(0, rest / widening);
    sizes[i].cy = Height(*row.Controls[i], static_cast<int>(sizes[i].cx));
  }
  return sizes;
}

std::vector<TFormLayout::TSizedRow> TFormLayout::SizedRows(const TControls& controls, int width) const {
  std::vector<TSizedRow> rows;
  for (const TFormRow& row : rtl::RowsOf(controls)) {
    TSizedRow sized = {row, Sizes(row, width)};
    for (const SIZE& size : sized.Sizes) sized.Height = std::max(sized.Height, static_cast<int>(size.cy));
    if (!rows.empty()) sized.SpaceAbove += FMetrics.Scale(rtl::kRowSpacing);
    if (row.Place().GapAbove) sized.SpaceAbove += FMetrics.Scale(rtl::kRowGap);
    rows.push_back(std::move(sized));
  }
  return rows;
}

// --- Positions ---

// Places the controls of a row from `left`. Controls that do not grow are centred in its height.
void TFormLayout::PlaceRow(const TSizedRow& row, int left, int top, int height) {
  if (row.Row.Place().Indented) left += FMetrics.Scale(rtl::kRowIndent);
  for (size_t i = 0; i < row.Sizes.size(); ++i) {
    const SIZE size = {row.Sizes[i].cx, row.Row.Grows() ? height : row.Sizes[i].cy};
    const LONG above = top + (height - size.cy) / 2;
    Place(*row.Row.Controls[i], {left, above, left + size.cx, above + size.cy});
    left += static_cast<int>(size.cx) + FMetrics.Scale(rtl::kRowSpacing);
  }
}

void TFormLayout::Place(const TControls& controls, const RECT& place) {
  const std::vector<TSizedRow> rows = SizedRows(controls, static_cast<int>(place.right - place.left));
  int rest = static_cast<int>(place.bottom - place.top);
  int growing = 0;
  for (const TSizedRow& row : rows) {
    rest -= row.SpaceAbove + row.Height;
    if (row.Row.Grows()) ++growing;
  }
  int top = static_cast<int>(place.top);
  for (const TSizedRow& row : rows) {
    const int height = row.Height + (row.Row.Grows() ? std::max(0, rest) / growing : 0);
    top += row.SpaceAbove;
    PlaceRow(row, static_cast<int>(place.left), top, height);
    top += height;
  }
}

void TFormLayout::Place(rtl::TControl& control, const RECT& place) {
  if (control.Kind() == TControlKind::PageControl) {
    for (const rtl::TControl* page : control.Controls()) Place(page->Controls(), place);
  } else if (control.Controls().empty()) {
    FWindowOf(control).Place(place);
  } else {
    Place(control.Controls(), place);
  }
}

SIZE TFormLayout::Arrange() {
  const rtl::TFormParts parts(FForm);
  const int margin = FMetrics.Scale(rtl::kFormMargin);
  const int spacing = FMetrics.Scale(rtl::kRowSpacing);

  // The pictures, and to the right of them the body.
  int left = margin;
  int height = 0;
  for (rtl::TControl* picture : parts.Pictures) {
    const SIZE size = FWindowOf(*picture).Measure(FMetrics, 0);
    Place(*picture, {left, margin, left + size.cx, margin + size.cy});
    left += static_cast<int>(size.cx) + margin;
    height = std::max(height, static_cast<int>(size.cy));
  }
  int buttonsWidth = 0;
  for (const rtl::TControl* button : parts.Buttons) buttonsWidth += MinimumWidth(*button, false) + spacing;
  const int width = std::max({FForm.MinimumWidth() * FMetrics.CharWidth(),
                              left + MinimumWidth(parts.Body) + margin, buttonsWidth + 2 * margin});
  const int right = width - margin;
  height = std::max(height, Height(parts.Body, right - left));
  Place(parts.Body, {left, margin, right, margin + height});

  // The line, and below it the buttons from the right.
  int top = margin + height + margin;
  if (parts.Line != nullptr) {
    const int lineHeight = Height(*parts.Line, right - margin);
    Place(*parts.Line, {margin, top, right, top + lineHeight});
    top += lineHeight + margin;
  }
  int buttonRight = right;
  int buttonHeight = 0;
  for (auto button = parts.Buttons.rbegin(); button != parts.Buttons.rend(); ++button) {
    const SIZE size = FWindowOf(**button).Measure(FMetrics, 0);
    Place(**button, {buttonRight - size.cx, top, buttonRight, top + size.cy});
    buttonRight -= static_cast<int>(size.cx) + spacing;
    buttonHeight = std::max(buttonHeight, static_cast<int>(size.cy));
  }
  return {width, top + buttonHeight + margin};
}

}  // namespace native
