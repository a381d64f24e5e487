// The style of the application, with an outline around ticks in dark themes: Fusion draws it darker than the
// page, so that an empty box cannot be seen.
//
//   QApplication::setStyle(new TTickStyle);
#pragma once

#include <QProxyStyle>

namespace desktop {

class TTickStyle : public QProxyStyle {
 public:
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace desktop
