// A read-only page of a diff. Line numbers and the signs of changes are in its margin, so that copied text
// consists of the file's lines only.
#pragma once

#include <QPlainTextEdit>
#include <functional>

#include "desktop/FileDiff.h"

namespace desktop {

class TDiffPane : public QPlainTextEdit {
 public:
  // Which line numbers the margin has.
  enum class TNumbers { Old, New, Both };
  TDiffPane(const char* name, TNumbers numbers, QWidget* parent);

  void ShowText(const TPaneText& text);
  const std::vector<TPaneLine>& Lines() const { return FLines; }
  // The line with the cursor, from 0. Selecting one scrolls it towards the middle.
  int Row() const { return textCursor().blockNumber(); }
  void SelectRow(int row);

  // Called when the user opens a line with Enter or a double click.
  std::function<void(int row)> OnOpen;

  // The margin.
  int MarginWidth() const;
  void PaintMargin(QPaintEvent& event);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  // Leaves out lines that are not in the file.
  QMimeData* createMimeDataFromSelection() const override;

 private:
  const TPaneLine& LineAt(int row) const;
  void PaintLine(QPainter& painter, const QTextBlock& block, const QRectF& place) const;
  // Calls `use` for each visible line, with its place on the viewport.
  void ForVisibleLines(int bottom, const std::function<void(const QTextBlock&, const QRectF&)>& use) const;

  const TNumbers FNumbers;
  QWidget* FMargin;
  std::vector<TPaneLine> FLines;
};

// The colours of changes, mixed from the widget's background, so that they suit light and dark themes.
enum class TDiffColour { Added, Removed, AddedWord, RemovedWord, AddedText, RemovedText, Absent };
QColor DiffColour(const QPalette& palette, TDiffColour colour);

}  // namespace desktop
