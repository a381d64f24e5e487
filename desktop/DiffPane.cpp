#include "desktop/DiffPane.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>

#include "desktop/SourceLexer.h"

namespace desktop {

namespace {

using TKind = TPaneLine::TKind;

constexpr int kGap = 6;  // pixels between the columns of the margin

class TMargin : public QWidget {
 public:
  explicit TMargin(TDiffPane& pane) : QWidget(&pane), FPane(pane) {}

 protected:
  void paintEvent(QPaintEvent* event) override { FPane.PaintMargin(*event); }

 private:
  TDiffPane& FPane;
};

QColor Mixed(const QColor& ground, const QColor& colour, double part) {
  const auto mix = [part](double from, double to) { return static_cast<float>(from + (to - from) * part); };
  return QColor::fromRgbF(mix(ground.redF(), colour.redF()), mix(ground.greenF(), colour.greenF()),
                          mix(ground.blueF(), colour.blueF()));
}

QString SignOf(TKind kind) {
  if (kind == TKind::Removed) return QString(QChar(0x2212));
  return kind == TKind::Added ? QString('+') : QString();
}

}  // namespace

QColor DiffColour(const QPalette& palette, TDiffColour colour) {
  const QColor ground = palette.color(QPalette::Base);
  const bool isDark = ground.lightness() < 128;
  const QColor green(isDark ? 0x3FB950 : 0x1A7F37);
  const QColor red(isDark ? 0xF85149 : 0xCF222E);
  switch (colour) {
    case TDiffColour::Added:
      return Mixed(ground, green, isDark ? 0.20 : 0.12);
    case TDiffColour::Removed:
      return Mixed(ground, red, isDark ? 0.20 : 0.10);
    case TDiffColour::AddedWord:
      return Mixed(ground, green, isDark ? 0.50 : 0.36);
    case TDiffColour::RemovedWord:
      return Mixed(ground, red, isDark ? 0.50 : 0.30);
    case TDiffColour::AddedText:
      return green;
    case TDiffColour::RemovedText:
      return red;
    case TDiffColour::Absent:
      break;
  }
  return Mixed(ground, palette.color(QPalette::Text), 0.06);
}

TDiffPane::TDiffPane(const char* name, TNumbers numbers, QWidget* parent)
    : QPlainTextEdit(parent), FNumbers(numbers), FMargin(new TMargin(*this)) {
  setObjectName(name);
  setAccessibleName(numbers == TNumbers::Old ? "Before" : numbers == TNumbers::New ? "After" : "Changes");
  setReadOnly(true);
  setTextInteractionFlags(textInteractionFlags() | Qt::TextSelectableByKeyboard);
  setFont(SourceFont());
  setLineWrapMode(NoWrap);
  setUndoRedoEnabled(false);
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int dy) {
    if (dy != 0) {
      FMargin->scroll(0, dy);
    } else {
      FMargin->update(0, rect.y(), FMargin->width(), rect.height());
    }
  });
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
    FMargin->update();
    viewport()->update();
  });
}

void TDiffPane::ShowText(const TPaneText& text) {
  FLines = text.Lines;
  setPlainText(text.Text);
  setViewportMargins(MarginWidth(), 0, 0, 0);
  FMargin->setGeometry(contentsRect().left(), contentsRect().top(), MarginWidth(), contentsRect().height());
  FMargin->update();
}

void TDiffPane::SelectRow(int row) {
  QTextCursor cursor(document()->findBlockByNumber(row));
  setTextCursor(cursor);
  const int visible = viewport()->height() / qMax(1, fontMetrics().lineSpacing());
  verticalScrollBar()->setValue(row - visible / 3);
}

const TPaneLine& TDiffPane::LineAt(int row) const {
  static const TPaneLine kNone;
  return row < 0 || row >= static_cast<int>(FLines.size()) ? kNone : FLines[static_cast<size_t>(row)];
}

void TDiffPane::ForVisibleLines(int bottom,
                                const std::function<void(const QTextBlock&, const QRectF&)>& use) const {
  QTextBlock block = firstVisibleBlock();
  QRectF place = blockBoundingGeometry(block).translated(contentOffset());
  while (block.isValid() && place.top() <= bottom) {
    use(block, place);
    const qreal end = place.bottom();
    block = block.next();
    place = blockBoundingGeometry(block);
    place.moveTop(end);
  }
}

void TDiffPane::PaintLine(QPainter& painter, const QTextBlock& block, const QRectF& place) const {
  const TPaneLine& line = LineAt(block.blockNumber());
  const QRectF whole(0, place.top(), viewport()->width(), place.height());
  const bool isAdded = line.Kind == TKind::Added;
  if (line.Kind == TKind::Absent || line.Kind == TKind::Fold) {
    painter.fillRect(whole, DiffColour(palette(), TDiffColour::Absent));
  } else if (line.Kind != TKind::Same) {
    painter.fillRect(whole, DiffColour(palette(), isAdded ? TDiffColour::Added : TDiffColour::Removed));
  }
  const QColor colour = DiffColour(palette(), isAdded ? TDiffColour::AddedWord : TDiffColour::RemovedWord);
  const QTextLine layout = block.layout()->lineCount() > 0 ? block.layout()->lineAt(0) : QTextLine();
  if (!layout.isValid()) return;
  for (const auto& [offset, length] : line.Words) {
    const qreal left = place.left() + layout.cursorToX(offset);
    const qreal right = place.left() + layout.cursorToX(offset + length);
    painter.fillRect(QRectF(left, place.top(), right - left, place.height()), colour);
  }
}

void TDiffPane::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(viewport());
    ForVisibleLines(event->rect().bottom(),
                    [&](const QTextBlock& block, const QRectF& place) { PaintLine(painter, block, place); });
  }
  QPlainTextEdit::paintEvent(event);
}

int TDiffPane::MarginWidth() const {
  int digits = 3;
  for (auto line = FLines.rbegin(); line != FLines.rend(); ++line) {
    if (line->Kind != TKind::Same) continue;
    digits = qMax(digits, static_cast<int>(QString::number(qMax(line->OldLine, line->NewLine)).size()));
    break;
  }
  const int number = fontMetrics().horizontalAdvance('9') * (digits + 1) + kGap;
  return (FNumbers == TNumbers::Both ? 2 : 1) * number + fontMetrics().horizontalAdvance('+') + 2 * kGap;
}

void TDiffPane::PaintMargin(QPaintEvent& event) {
  QPainter painter(FMargin);
  painter.fillRect(event.rect(), palette().color(QPalette::AlternateBase));
  painter.setFont(font());
  const int signWidth = fontMetrics().horizontalAdvance('+') + kGap;
  const int columns = FNumbers == TNumbers::Both ? 2 : 1;
  const int width = (FMargin->width() - signWidth - kGap) / columns;
  const QColor quiet = Mixed(palette().color(QPalette::Base), palette().color(QPalette::Text), 0.65);
  ForVisibleLines(event.rect().bottom(), [&](const QTextBlock& block, const QRectF& place) {
    const TPaneLine& line = LineAt(block.blockNumber());
    const bool isCurrent = block.blockNumber() == Row();
    if (isCurrent) {
      painter.fillRect(QRectF(0, place.top(), 3, place.height()), palette().color(QPalette::Highlight));
    }
    painter.setPen(isCurrent ? palette().color(QPalette::Text) : quiet);
    const auto drawNumber = [&](int column, int number) {
      if (number == 0) return;
      // At the top, because the last line's place includes the margin of the text.
      painter.drawText(QRectF(column * width, place.top(), width, place.height()),
                       Qt::AlignRight | Qt::AlignTop, QString::number(number));
    };
    if (FNumbers != TNumbers::New) drawNumber(0, line.OldLine);
    if (FNumbers != TNumbers::Old) drawNumber(columns - 1, line.NewLine);
    painter.setPen(
        DiffColour(palette(), line.Kind == TKind::Added ? TDiffColour::AddedText : TDiffColour::RemovedText));
    painter.drawText(QRectF(FMargin->width() - signWidth, place.top(), signWidth, place.height()),
                     Qt::AlignHCenter | Qt::AlignTop, SignOf(line.Kind));
  });
}

void TDiffPane::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  FMargin->setGeometry(contentsRect().left(), contentsRect().top(), MarginWidth(), contentsRect().height());
}

void TDiffPane::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && FMargin != nullptr) FMargin->update();
}

void TDiffPane::keyPressEvent(QKeyEvent* event) {
  if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && OnOpen) return OnOpen(Row());
  QPlainTextEdit::keyPressEvent(event);
}

void TDiffPane::mouseDoubleClickEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseDoubleClickEvent(event);
  if (OnOpen) OnOpen(Row());
}

QMimeData* TDiffPane::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  QStringList lines;
  for (QTextBlock block = document()->findBlock(cursor.selectionStart());
       block.isValid() && block.position() <= cursor.selectionEnd(); block = block.next()) {
    const TKind kind = LineAt(block.blockNumber()).Kind;
    if (kind == TKind::Absent || kind == TKind::Fold) continue;
    const int first = qMax(0, cursor.selectionStart() - block.position());
    lines += block.text().mid(first, cursor.selectionEnd() - block.position() - first);
  }
  auto* const copied = new QMimeData;
  copied->setText(lines.join('\n'));
  return copied;
}

}  // namespace desktop
