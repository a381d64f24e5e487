#include "desktop/WindowState.h"

#include <QIcon>
#include <QMainWindow>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include "MigWizard/run/RExpertRes.h"
#include "desktop/HostTexts.h"
#include "rtl/text/Registry.h"

namespace desktop {

namespace {

constexpr char kGeometry[] = "Geometry";
constexpr char kPanes[] = "Panes";
constexpr QSize kSize(1180, 780);
constexpr int kVersion = 1;  // of the set of panes

QByteArray Read(const rtl::TRegIniFile& reg, const char* key) {
  return QByteArray::fromBase64(QByteArray::fromStdString(reg.ReadString(kHostSection, key, "")));
}

// A database as a drum with its centre line at `x`, of an icon that is 128 units wide.
void DrawDrum(QPainter& painter, int x, QRgb body, QRgb lid) {
  QPainterPath drum;
  drum.addRect(x - 20, 44, 40, 44);
  drum.addEllipse(QRectF(x - 20, 81, 40, 14));
  painter.fillPath(drum.simplified(), QColor(body));
  painter.setBrush(QColor(lid));
  painter.drawEllipse(QRectF(x - 20, 37, 40, 14));
}

QPixmap DrawIcon(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.scale(size / 128.0, size / 128.0);
  painter.setBrush(QColor(0x14506C));
  painter.drawRoundedRect(QRectF(0, 0, 128, 128), 20, 20);
  DrawDrum(painter, 30, 0x969EAC, 0xB4BAC4);
  DrawDrum(painter, 98, 0x2AA8A4, 0x6FDCD2);
  painter.setBrush(Qt::white);
  painter.drawPolygon(QPolygonF({{52, 60}, {65, 60}, {65, 51}, {78, 66}, {65, 81}, {65, 72}, {52, 72}}));
  return pixmap;
}

}  // namespace

void RestoreWindow(QMainWindow& window) {
  const QSize room = window.screen()->availableSize();
  window.resize(kSize.boundedTo(room * 9 / 10));
  const rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  window.restoreGeometry(Read(reg, kGeometry));
  window.restoreState(Read(reg, kPanes), kVersion);
}

void StoreWindow(const QMainWindow& window) {
  rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  reg.WriteString(kHostSection, kGeometry, window.saveGeometry().toBase64().toStdString());
  reg.WriteString(kHostSection, kPanes, window.saveState(kVersion).toBase64().toStdString());
}

QIcon WindowIcon() {
  QIcon drawn;
  for (const int size : {16, 32, 48, 128}) drawn.addPixmap(DrawIcon(size));
  return QIcon::fromTheme("kvawizard", drawn);
}

}  // namespace desktop
