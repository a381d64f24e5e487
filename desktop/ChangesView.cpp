#include "desktop/ChangesView.h"

#include <QEvent>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTextBlock>

#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "desktop/SourceText.h"
#include "diff/LineDiff.h"
#include "rtl/text/SysUtils.h"

namespace desktop {

namespace {

using diff::TDiffLine;

constexpr int kContext = 3;  // unchanged lines around a change

std::string ReadableText(const std::string& bytes, const std::string& fileName) {
  const bool isForm = !rtl::SameText(rtl::ExtractFileExt(fileName), ".pas");
  return FromQt(TSourceText(bytes, isForm).Text());
}

// Which of the lines are shown: the changed ones, with their context.
std::vector<bool> ShownLines(const std::vector<TDiffLine>& lines) {
  std::vector<bool> shown(lines.size());
  int last = -1 - kContext;  // the last changed line
  const int count = static_cast<int>(lines.size());
  for (int i = 0; i < count; ++i) {
    if (lines[static_cast<size_t>(i)].Kind == TDiffLine::TKind::Same) {
      if (i - last <= kContext) shown[static_cast<size_t>(i)] = true;
      continue;
    }
    for (int j = std::max({last + 1, i - kContext, 0}); j <= i; ++j) shown[static_cast<size_t>(j)] = true;
    last = i;
  }
  return shown;
}

QString Number(int line) {
  return line == 0 ? QString(5, ' ') : QString::number(line).rightJustified(5);
}

QColor BackgroundOf(TDiffLine::TKind kind, bool isDark) {
  if (kind == TDiffLine::TKind::Removed) return isDark ? QColor(0x5A2A2E) : QColor(0xFFE0E0);
  if (kind == TDiffLine::TKind::Added) return isDark ? QColor(0x234A2E) : QColor(0xDDF6DD);
  return QColor::Invalid;
}

QPlainTextEdit* NewPage(const char* name) {
  auto* const page = new QPlainTextEdit;
  page->setObjectName(name);
  page->setReadOnly(true);
  page->setFont(SourceFont());
  page->setLineWrapMode(QPlainTextEdit::NoWrap);
  return page;
}

}  // namespace

TChangesView::TChangesView(QWidget* parent)
    : QTabWidget(parent),
      FFiles(new QListWidget),
      FDiff(NewPage("Diff")),
      FLog(NewPage("Log")),
      FMessages(NewPage("Messages")) {
  setObjectName("ChangesView");
  setDocumentMode(true);
  auto* const sides = new QSplitter;
  FFiles->setObjectName("ChangedFiles");
  sides->addWidget(FFiles);
  sides->addWidget(FDiff);
  sides->setStretchFactor(1, 1);
  sides->setSizes({260, 740});
  addTab(sides, "Changes");
  addTab(FLog, "Log");
  addTab(FMessages, "Messages");
  connect(FFiles, &QListWidget::currentRowChanged, this, [this](int row) { ShowFile(row); });
}

void TChangesView::ShowRun(const TRunRecord& record) {
  FFiles->clear();
  FChanges = record.Changes();
  for (const TRunRecord::TChange& change : FChanges) {
    auto* const item = new QListWidgetItem(ToQt(rtl::ExtractFileName(change.FileName)), FFiles);
    item->setToolTip(ToQt(change.FileName));
  }
  setTabText(0, QString("Changes (%1)").arg(FChanges.size()));
  FLog->setPlainText(ToQt(record.Log()));
  if (!record.Warnings().empty()) AddMessage(ToQt(record.Warnings()).trimmed());
  FDiff->setPlainText(FChanges.empty() ? "No file was changed." : "");
  FFiles->setCurrentRow(FChanges.empty() ? -1 : 0);
  setCurrentIndex(FChanges.empty() && !record.Warnings().empty() ? 2 : 0);
}

void TChangesView::changeEvent(QEvent* event) {
  QTabWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowFile(FFiles->currentRow());
}

void TChangesView::AddMessage(const QString& line) {
  FMessages->appendPlainText(line);
}

void TChangesView::ShowFile(int index) {
  if (index < 0) return;
  const TRunRecord::TChange& change = FChanges[static_cast<size_t>(index)];
  const std::string before = ReadableText(change.Before, change.FileName);
  const std::string after = ReadableText(change.After, change.FileName);
  const std::vector<TDiffLine> lines = diff::DiffLines(before, after, diff::TIgnore::LineEnds);
  const std::vector<bool> shown = ShownLines(lines);

  FDiff->clear();
  QTextCursor cursor(FDiff->document());
  cursor.beginEditBlock();
  cursor.insertText(ToQt(change.FileName));
  bool isGap = true;
  for (size_t i = 0; i < lines.size(); ++i) {
    if (!shown[i]) {
      isGap = true;
      continue;
    }
    if (isGap) cursor.insertBlock(QTextBlockFormat());
    isGap = false;
    const TDiffLine& line = lines[i];
    QTextBlockFormat format;
    const QColor background = BackgroundOf(line.Kind, IsDark(*this));
    if (background.isValid()) format.setBackground(background);
    cursor.insertBlock(format);
    const char* const mark = line.Kind == TDiffLine::TKind::Removed ? " - "
                             : line.Kind == TDiffLine::TKind::Added ? " + "
                                                                    : "   ";
    const std::string_view text = line.Kind == TDiffLine::TKind::Removed ? line.Old : line.New;
    QString shownText = ToQt(text);
    while (shownText.endsWith('\n') || shownText.endsWith('\r')) shownText.chop(1);
    cursor.insertText(Number(line.OldLine) + Number(line.NewLine) + mark + shownText);
  }
  cursor.endEditBlock();
  FDiff->moveCursor(QTextCursor::Start);
}

}  // namespace desktop
