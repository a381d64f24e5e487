// Icons of units and forms that can be told apart, on light and on dark ground.
#pragma once

#include <QIcon>

namespace desktop {

// Each call draws the icon again.
QIcon UnitIcon();
QIcon FormIcon();

}  // namespace desktop
