#include "desktop/KindIcons.h"

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>

namespace desktop {
namespace {

constexpr int kUnits = 16;                      // the drawings are in units of 1/16 of the icon
constexpr int kSizes[] = {16, 24, 32, 48, 64};  // pixels
// Dark enough for the outline on white, and a paper that is bright on dark ground.
const QColor kOutline(0x3F, 0x5F, 0x80), kPaper(0xF7, 0xFA, 0xFD), kText(0x7A, 0x93, 0xAD),
    kTitle(0x3F, 0x7F, 0xBF);

template <class TDrawing>
QIcon Draw(TDrawing drawing) {
  QIcon icon;
  for (const int size : kSizes) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(static_cast<qreal>(size) / kUnits, static_cast<qreal>(size) / kUnits);
    painter.setPen(QPen(kOutline, 1));
    painter.setBrush(kPaper);
    drawing(painter);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace

// A page of text with a folded corner.
QIcon UnitIcon() {
  return Draw([](QPainter& painter) {
    painter.drawPolygon(QPolygonF({{2.5, 0.5}, {9.5, 0.5}, {13.5, 4.5}, {13.5, 15.5}, {2.5, 15.5}}));
    painter.drawPolyline(QPolygonF({{9.5, 0.5}, {9.5, 4.5}, {13.5, 4.5}}));
    painter.setPen(QPen(kText, 1));
    for (const qreal line : {7.5, 9.5, 11.5}) painter.drawLine(QPointF(5, line), QPointF(11, line));
    painter.drawLine(QPointF(5, 13.5), QPointF(8, 13.5));
  });
}

// A window with a field and a button.
QIcon FormIcon() {
  return Draw([](QPainter& painter) {
    painter.drawRect(QRectF(0.5, 1.5, 15, 13));
    painter.fillRect(QRectF(1, 2, 14, 3), kTitle);
    painter.setPen(QPen(kText, 1));
    painter.drawRect(QRectF(3.5, 7.5, 9, 2));
    painter.fillRect(QRectF(8, 11, 5, 2), kText);
  });
}

}  // namespace desktop
