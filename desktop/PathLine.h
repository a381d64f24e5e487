// A line edit for a path: a file or folder that is dropped on it replaces its text.
#pragma once

#include <QLineEdit>

namespace desktop {

class TPathLine : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  // Take the first local file, as if the user had typed its path. QLineEdit handles other drops.
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
};

}  // namespace desktop
