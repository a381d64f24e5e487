#include "desktop/PicturePixmap.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace desktop {

namespace {

QPointF ToPoint(rtl::TPoint point) {
  return {point.X, point.Y};
}

QPainterPath PathOf(const rtl::TOutline& outline) {
  QPainterPath path(ToPoint(outline.back().End));
  for (const rtl::TOutlineStep& step : outline) {
    if (step.IsCurve) {
      path.cubicTo(ToPoint(step.Control1), ToPoint(step.Control2), ToPoint(step.End));
    } else {
      path.lineTo(ToPoint(step.End));
    }
  }
  return path;
}

QLinearGradient GradientOf(const rtl::TFill& fill) {
  QLinearGradient gradient(ToPoint(fill.Start), ToPoint(fill.End));
  for (const auto& [offset, color] : fill.Stops)
    gradient.setColorAt(offset, QColor(color.Red, color.Green, color.Blue, color.Opacity));
  return gradient;
}

}  // namespace

QPixmap PixmapOf(const rtl::TPicture& picture, qreal devicePixelRatio) {
  QPixmap pixmap(QSize(picture.Width, picture.Height) * devicePixelRatio);
  pixmap.setDevicePixelRatio(devicePixelRatio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const auto& [outline, fill] : picture.Shapes) painter.fillPath(PathOf(outline), GradientOf(fill));
  return pixmap;
}

}  // namespace desktop
