// The pictures of forms, drawn by Qt.
#pragma once

#include <QPixmap>

#include "rtl/forms/Picture.h"

namespace desktop {

QPixmap PixmapOf(const rtl::TPicture& picture, qreal devicePixelRatio);

}  // namespace desktop
