// The layout of a form. Controls follow each other in tab order, one per row. A table lists the few that
// are placed differently. Controls added by a derived form need no entry.
#pragma once

#include <QBoxLayout>
#include <functional>
#include <vector>

#include "rtl/forms/Forms.h"

class QFrame;
class QWidget;

namespace desktop {

using TWidgetOf = std::function<QWidget*(const rtl::TControl&)>;

// Returns a horizontal line in a colour that is unobtrusive on light and dark backgrounds.
QFrame* NewLine(QWidget* parent);

// Lays out the controls of a page or another container in `inside`.
void LayOutBox(const std::vector<rtl::TControl*>& controls, QWidget* inside, const TWidgetOf& widgetOf);

// Lays out the controls of the form itself: a picture to the left of the control after it, and below a line
// the buttons, in one row on the right.
void LayOutForm(const rtl::TForm& form, QWidget* window, const TWidgetOf& widgetOf);

}  // namespace desktop
