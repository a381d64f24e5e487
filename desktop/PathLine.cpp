#include "desktop/PathLine.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace desktop {
namespace {

// Returns the path of the first local file, or an empty string.
QString LocalFile(const QDropEvent& event) {
  const QList<QUrl> urls = event.mimeData()->urls();
  for (const QUrl& url : urls)
    if (url.isLocalFile()) return url.toLocalFile();
  return {};
}

// Accepts the file as a copy, because it stays where it is.
void Accept(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

}  // namespace

void TPathLine::dragEnterEvent(QDragEnterEvent* event) {
  if (LocalFile(*event).isEmpty()) return QLineEdit::dragEnterEvent(event);
  Accept(*event);
}

void TPathLine::dragMoveEvent(QDragMoveEvent* event) {
  if (LocalFile(*event).isEmpty()) return QLineEdit::dragMoveEvent(event);
  Accept(*event);
}

void TPathLine::dropEvent(QDropEvent* event) {
  const QString path = LocalFile(*event);
  if (path.isEmpty()) return QLineEdit::dropEvent(event);
  selectAll();
  insert(path);
  Accept(*event);
}

}  // namespace desktop
