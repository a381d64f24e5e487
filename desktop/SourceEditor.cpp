#include "desktop/SourceEditor.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>

#include "desktop/QtText.h"
#include "desktop/SourceHighlighter.h"

namespace desktop {

namespace {

constexpr int kTabColumns = 8;
constexpr int kNumberMargin = 6;  // pixels on either side

class TNumbers : public QWidget {
 public:
  explicit TNumbers(TSourceEditor& editor) : QWidget(&editor), FEditor(editor) {}
  QSize sizeHint() const override { return {FEditor.NumbersWidth(), 0}; }

 protected:
  void paintEvent(QPaintEvent* event) override { FEditor.PaintNumbers(*event); }

 private:
  TSourceEditor& FEditor;
};

}  // namespace

QFont SourceFont() {
  return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

bool IsDark(const QWidget& widget) {
  return widget.palette().color(QPalette::Base).lightness() < 128;
}

TSourceEditor::TSourceEditor(host::TFileEditor& editor, QWidget* parent)
    : QPlainTextEdit(parent), FEditor(editor), FNumbers(new TNumbers(*this)) {
  setObjectName("SourceEditor");
  setFont(SourceFont());
  setLineWrapMode(NoWrap);
  setTabStopDistance(fontMetrics().horizontalAdvance(' ') * kTabColumns);
  SetColors();
  connect(this, &QPlainTextEdit::blockCountChanged, this,
          [this] { setViewportMargins(NumbersWidth(), 0, 0, 0); });
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int dy) {
    if (dy != 0) {
      FNumbers->scroll(0, dy);
    } else {
      FNumbers->update(0, rect.y(), FNumbers->width(), rect.height());
    }
  });
  connect(document(), &QTextDocument::contentsChange, this,
          [this](int position, int, int added) { TextChanged(position, added); });
  Load();
}

// Disconnects first, because the document reports the end of its colours as a change.
TSourceEditor::~TSourceEditor() {
  disconnect(document(), nullptr, this, nullptr);
}

void TSourceEditor::SetColors() {
  const bool isForm = FEditor.Kind() == host::TEditorKind::Form;
  FHighlighter = std::make_unique<TSourceHighlighter>(document(), isForm, IsDark(*this));
}

void TSourceEditor::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && FHighlighter) SetColors();
}

void TSourceEditor::Load() {
  const QScopedValueRollback guard(FIsOwnChange, true);
  const std::string& bytes = FEditor.Buffer().Bytes();
  FSource.emplace(bytes, FEditor.Kind() == host::TEditorKind::Form);
  const int line = textCursor().blockNumber();
  const int scroll = verticalScrollBar()->value();
  setPlainText(FSource->Text());
  // The page may represent the text differently from the file. Such a text must not be edited.
  const bool isFaithful = DocumentText() == FSource->Text();
  setReadOnly(!FSource->ReadOnlyReason().isEmpty() || !isFaithful);
  setTextInteractionFlags(textInteractionFlags() | Qt::TextSelectableByKeyboard);
  setTextCursor(QTextCursor(document()->findBlockByNumber(qMin(line, blockCount() - 1))));
  verticalScrollBar()->setValue(scroll);
  setViewportMargins(NumbersWidth(), 0, 0, 0);
}

void TSourceEditor::BufferChanged() {
  if (FIsOwnChange) return;
  QString missing;
  if (FSource->Encode(DocumentText(), missing) != FEditor.Buffer().Bytes()) Load();
}

// Returns the text as the page holds it. QPlainTextEdit::toPlainText would replace no-break spaces by
// blanks.
QString TSourceEditor::DocumentText() const {
  QString text = document()->toRawText();
  return text.replace(QChar::ParagraphSeparator, '\n');
}

void TSourceEditor::TextChanged(int position, int added) {
  if (FIsOwnChange || isReadOnly()) return;
  const QScopedValueRollback guard(FIsOwnChange, true);
  QString missing;
  if (std::optional<std::string> bytes = FSource->Encode(DocumentText(), missing)) {
    FEditor.Buffer().SetBytes(std::move(*bytes));
    return;
  }
  // The document must not be changed from within its own change notification.
  QTimer::singleShot(0, this, [this, position, added, missing] {
    QTextCursor cursor(document());
    cursor.setPosition(position);
    cursor.setPosition(qMin(position + added, document()->characterCount() - 1), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    if (OnRefused) {
      OnRefused(QString("\"%1\" was not entered: this file is in %2, which has no such character.")
                    .arg(missing, FSource->Encoding()));
    }
  });
}

QString TSourceEditor::State() const {
  QString state = FSource->Encoding() + "    " + FSource->LineEnds();
  if (isReadOnly()) {
    const QString reason = FSource->ReadOnlyReason();
    state += "    Read-only: " + (reason.isEmpty() ? "it holds characters that cannot be edited" : reason);
  }
  return state;
}

int TSourceEditor::NumbersWidth() const {
  const qsizetype digits = qMax<qsizetype>(3, QString::number(blockCount()).size());
  return fontMetrics().horizontalAdvance('9') * static_cast<int>(digits) + 2 * kNumberMargin;
}

void TSourceEditor::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  const QRect inside = contentsRect();
  FNumbers->setGeometry(inside.left(), inside.top(), NumbersWidth(), inside.height());
}

void TSourceEditor::PaintNumbers(QPaintEvent& event) {
  QPainter painter(FNumbers);
  painter.fillRect(event.rect(), palette().color(QPalette::AlternateBase));
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.setFont(font());
  QTextBlock block = firstVisibleBlock();
  QRectF place = blockBoundingGeometry(block).translated(contentOffset());
  while (block.isValid() && place.top() <= event.rect().bottom()) {
    painter.drawText(QRectF(0, place.top(), NumbersWidth() - kNumberMargin, fontMetrics().height()),
                     Qt::AlignRight, QString::number(block.blockNumber() + 1));
    const qreal bottom = place.bottom();
    block = block.next();
    place = blockBoundingGeometry(block);
    place.moveTop(bottom);
  }
}

}  // namespace desktop
