// The layout of a form: its rows (rtl/forms/FormRows.h) as Qt layouts.
#pragma once

#include <QBoxLayout>
#include <functional>
#include <vector>

#include "rtl/forms/Forms.h"

class QWidget;

namespace desktop {

using TWidgetOf = std::function<QWidget*(const rtl::TControl&)>;

// Lays out the controls of a page or another container in `inside`.
void LayOutBox(const std::vector<rtl::TControl*>& controls, QWidget* inside, const TWidgetOf& widgetOf);

// Lays out the controls of the form itself: a picture to the left of the control after it, and below a line
// the buttons, in one row on the right.
void LayOutForm(const rtl::TForm& form, QWidget* window, const TWidgetOf& widgetOf);

}  // namespace desktop
