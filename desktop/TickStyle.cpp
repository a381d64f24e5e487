#include "desktop/TickStyle.h"

#include <QPainter>
#include <QStyleOption>

#include "desktop/SourceLexer.h"

namespace desktop {

void TTickStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool isBox = element == PE_IndicatorItemViewItemCheck || element == PE_IndicatorCheckBox;
  if (!isBox && element != PE_IndicatorRadioButton) return;
  if (baseStyle()->name() != "fusion" || !IsDark(option->palette)) return;
  const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setBrush(Qt::NoBrush);
  painter->setPen(option->palette.color(QPalette::PlaceholderText));
  if (isBox) {
    painter->drawRect(outline);
  } else {
    painter->drawEllipse(outline);
  }
  painter->restore();
}

}  // namespace desktop
