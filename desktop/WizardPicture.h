// The wizard's picture: what the migration does, as a drawing.
#pragma once

#include <QPixmap>

namespace desktop {

// 120 by 260 pixels that do not depend on the screen's density; drawn for that density.
QPixmap WizardPicture(qreal devicePixelRatio);

}  // namespace desktop
