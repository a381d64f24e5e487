// The layout of a form: computes positions for its rows (rtl/forms/FormRows.h) and moves the windows there.
#pragma once

#include <functional>
#include <vector>

#include "native/ControlWindows.h"
#include "rtl/forms/FormRows.h"
#include "rtl/forms/Forms.h"

namespace native {

class TFormLayout {
 public:
  using TWindowOf = std::function<TControlWindow&(const rtl::TControl&)>;

  // The arguments must outlive this object.
  TFormLayout(const rtl::TForm& form, const TMetrics& metrics, const TWindowOf& windowOf)
      : FForm(form), FMetrics(metrics), FWindowOf(windowOf) {}

  // Places all controls and returns the size of the client area, in pixels.
  SIZE Arrange();

 private:
  using TControls = std::vector<rtl::TControl*>;
  // A row with the sizes of its controls.
  struct TSizedRow {
    rtl::TFormRow Row;
    std::vector<SIZE> Sizes;
    int Height = 0;  // of the highest control
    int SpaceAbove = 0;
  };

  int MinimumWidth(const TControls& controls) const;
  int MinimumWidth(const rtl::TControl& control, bool widens) const;
  int Height(const TControls& controls, int width) const;
  int Height(const rtl::TControl& control, int width) const;
  std::vector<TSizedRow> SizedRows(const TControls& controls, int width) const;
  std::vector<SIZE> Sizes(const rtl::TFormRow& row, int width) const;

  void Place(const TControls& controls, const RECT& place);
  void Place(rtl::TControl& control, const RECT& place);
  void PlaceRow(const TSizedRow& row, int left, int top, int height);

  const rtl::TForm& FForm;
  const TMetrics& FMetrics;
  const TWindowOf& FWindowOf;
};

}  // namespace native
