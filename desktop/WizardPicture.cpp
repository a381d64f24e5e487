#include "desktop/WizardPicture.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace desktop {

namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 260;
constexpr qreal kCenter = kWidth / 2.0;

// Draws a database as a drum of `disks` disks, with its top at `top`.
void DrawDrum(QPainter& painter, qreal top, int disks, const QColor& light, const QColor& dark) {
  constexpr qreal kRadius = 32;
  constexpr qreal kTilt = 9;
  constexpr qreal kDisk = 17;
  constexpr qreal kGap = 3;
  painter.setPen(Qt::NoPen);
  // From the bottom up, so that each disk covers the one below it.
  for (int i = disks - 1; i >= 0; --i) {
    const qreal y = top + i * (kDisk + kGap);
    const QRectF lid(kCenter - kRadius, y, 2 * kRadius, 2 * kTilt);
    QPainterPath side;
    side.moveTo(lid.left(), lid.center().y());
    side.lineTo(lid.left(), lid.center().y() + kDisk);
    side.arcTo(lid.translated(0, kDisk), 180, 180);
    side.lineTo(lid.right(), lid.center().y());
    side.closeSubpath();
    QLinearGradient metal(lid.left(), 0, lid.right(), 0);
    metal.setColorAt(0, dark);
    metal.setColorAt(0.35, light);
    metal.setColorAt(1, dark);
    painter.setBrush(metal);
    painter.drawPath(side);
    painter.setBrush(light.lighter(118));
    painter.drawEllipse(lid);
  }
}

void DrawArrow(QPainter& painter, qreal top) {
  constexpr qreal kShaft = 7;
  constexpr qreal kHead = 18;
  constexpr qreal kLength = 40;
  QPainterPath arrow;
  arrow.moveTo(kCenter - kShaft, top);
  arrow.lineTo(kCenter + kShaft, top);
  arrow.lineTo(kCenter + kShaft, top + kLength - kHead);
  arrow.lineTo(kCenter + kHead, top + kLength - kHead);
  arrow.lineTo(kCenter, top + kLength);
  arrow.lineTo(kCenter - kHead, top + kLength - kHead);
  arrow.lineTo(kCenter - kShaft, top + kLength - kHead);
  arrow.closeSubpath();
  QLinearGradient glow(0, top, 0, top + kLength);
  glow.setColorAt(0, QColor(255, 255, 255, 60));
  glow.setColorAt(1, QColor(255, 255, 255, 235));
  painter.setPen(Qt::NoPen);
  painter.setBrush(glow);
  painter.drawPath(arrow);
}

// Draws lines of source text in the background. Longer lines are indented less.
void DrawSource(QPainter& painter) {
  constexpr int kLines[][2] = {{0, 58}, {10, 70}, {10, 44}, {20, 52}, {20, 30}, {10, 62}, {0, 36}};
  painter.setPen(QPen(QColor(255, 255, 255, 26), 3, Qt::SolidLine, Qt::RoundCap));
  for (int y = 12, i = 0; y < kHeight; y += 9, i = (i + 1) % 7) {
    painter.drawLine(14 + kLines[i][0], y, 14 + kLines[i][0] + kLines[i][1] - 10, y);
  }
}

}  // namespace

QPixmap WizardPicture(qreal devicePixelRatio) {
  QPixmap picture(QSize(kWidth, kHeight) * devicePixelRatio);
  picture.setDevicePixelRatio(devicePixelRatio);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient sky(0, 0, kWidth, kHeight);
  sky.setColorAt(0, QColor(24, 44, 84));
  sky.setColorAt(1, QColor(16, 112, 128));
  painter.fillRect(QRect(0, 0, kWidth, kHeight), sky);
  DrawSource(painter);
  DrawDrum(painter, 24, 3, QColor(150, 158, 172), QColor(86, 94, 110));
  DrawArrow(painter, 110);
  DrawDrum(painter, 160, 3, QColor(66, 200, 190), QColor(12, 120, 128));
  return picture;
}

}  // namespace desktop
