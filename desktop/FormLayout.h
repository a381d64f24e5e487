// How the controls of a form are arranged. Controls stand in tab order, one a row; a table of the few that
// stand elsewhere does the rest. What a derived form adds falls into place.
#pragma once

#include <QBoxLayout>
#include <functional>
#include <vector>

#include "rtl/forms/Forms.h"

class QFrame;
class QWidget;

namespace desktop {

using TWidgetOf = std::function<QWidget*(const rtl::TControl&)>;

// A line across, in a colour that is quiet on light and dark grounds.
QFrame* NewLine(QWidget* parent);

// Lays out the controls of a page or another box, in `inside`.
void LayOutBox(const std::vector<rtl::TControl*>& controls, QWidget* inside, const TWidgetOf& widgetOf);

// Lays out what stands on the form itself: a picture left of what follows it, then, below a line, the buttons
// in one row on the right.
void LayOutForm(const rtl::TForm& form, QWidget* window, const TWidgetOf& widgetOf);

}  // namespace desktop
