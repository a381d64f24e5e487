// The wizard's picture: a drawing of the migration.
#pragma once

#include <QPixmap>

namespace desktop {

// Returns a picture of 120 by 260 device-independent pixels, drawn for that pixel ratio.
QPixmap WizardPicture(qreal devicePixelRatio);

}  // namespace desktop
