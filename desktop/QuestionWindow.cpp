#include "desktop/QuestionWindow.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

#include "desktop/QtText.h"

namespace desktop {

namespace {

constexpr int kTextWidth = 92;    // average characters
constexpr int kMostDetails = 12;  // lines that are visible at once
constexpr int kLeastLines = 4;    // of the texts on a low screen
constexpr int kIconSize = 48;

QStyle::StandardPixmap IconOf(unsigned flags) {
  if (flags == rtl::MB_ICONERROR) return QStyle::SP_MessageBoxCritical;
  return flags == rtl::MB_ICONINFORMATION ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxWarning;
}

// Paths have no spaces at which a label could break them, so a break is allowed after each separator.
QString Breakable(QString text) {
  return text.replace("\\", QString("\\") + QChar(0x200B));
}

QLabel* NewLabel(const QString& text, int width) {
  auto* const label = new QLabel(Breakable(text));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setMinimumWidth(width);
  label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
  return label;
}

QGridLayout* NewTable(const std::vector<std::pair<std::string, std::string>>& rows) {
  auto* const table = new QGridLayout;
  table->setColumnStretch(1, 1);
  table->setHorizontalSpacing(12);
  table->setVerticalSpacing(4);
  for (const auto& [name, value] : rows) {
    const int row = table->rowCount();
    QLabel* const title = NewLabel(ToQt(name), 0);
    title->setWordWrap(false);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    table->addWidget(title, row, 0);
    table->addWidget(NewLabel(ToQt(value), 0), row, 1);
  }
  return table;
}

QPlainTextEdit* NewList(const std::vector<std::string>& lines) {
  auto* const list = new QPlainTextEdit;
  list->setObjectName("Details");
  list->setReadOnly(true);
  list->setTabChangesFocus(true);
  list->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  QStringList texts;
  for (const std::string& line : lines) texts << ToQt(line);
  list->setPlainText(texts.join('\n'));
  const int visible = qBound(3, 2 * list->blockCount(), kMostDetails);
  // On a small screen the list is as low as its minimum.
  const int frame = 2 * list->frameWidth() + 10;
  list->setMinimumHeight(list->fontMetrics().lineSpacing() * 3 + frame);
  if (visible < kMostDetails) list->setMaximumHeight(list->fontMetrics().lineSpacing() * visible + frame);
  return list;
}

// Texts that scroll if there is no room for all of them.
class TTextArea : public QScrollArea {
 public:
  explicit TTextArea(QLayout* texts) {
    auto* const inside = new QWidget;
    texts->setContentsMargins({});
    inside->setLayout(texts);
    setObjectName("Texts");
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(inside);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setMinimumWidth(inside->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width());
  }
  QSize sizeHint() const override {
    const int width = minimumWidth();
    return {width, widget()->layout()->totalHeightForWidth(width)};
  }
  QSize minimumSizeHint() const override {
    const int lines = fontMetrics().lineSpacing() * kLeastLines;
    return {minimumWidth(), qMin(lines, sizeHint().height())};
  }
};

}  // namespace

TQuestionWindow::TQuestionWindow(const rtl::TQuestion& question, QWidget* parent)
    : QDialog(parent), FCancel(question.Cancel) {
  setObjectName("Question");
  setWindowTitle(ToQt(question.Caption));
  auto* const rows = new QVBoxLayout(this);
  auto* const sides = new QHBoxLayout;
  auto* const icon = new QLabel;
  icon->setPixmap(style()->standardIcon(IconOf(question.Flags), nullptr, this).pixmap(kIconSize));
  sides->addWidget(icon, 0, Qt::AlignTop);
  sides->addSpacing(8);
  auto* const column = new QVBoxLayout;
  column->setSpacing(10);
  AddTexts(question, column);
  sides->addLayout(column, 1);
  rows->addLayout(sides, 1);
  rows->addSpacing(6);
  AddButtons(question, rows);
  setMaximumSize(screen()->availableSize() * 9 / 10);
}

void TQuestionWindow::AddTexts(const rtl::TQuestion& question, QVBoxLayout* column) {
  const int width =
      qMin(fontMetrics().averageCharWidth() * kTextWidth, screen()->availableSize().width() / 2);
  QLabel* const text = NewLabel(ToQt(question.Text), width);
  QFont bold = text->font();
  bold.setBold(true);
  text->setFont(bold);
  auto* const texts = new QVBoxLayout;
  texts->setSpacing(10);
  texts->addWidget(text);
  QStringList lines = {ToQt(question.Text)};
  for (const std::string& reason : question.Reasons) {
    texts->addWidget(NewLabel(ToQt(reason), width));
    lines << ToQt(reason);
  }
  if (!question.Rows.empty()) texts->addLayout(NewTable(question.Rows));
  column->addWidget(new TTextArea(texts));
  for (const auto& [name, value] : question.Rows)
    lines << (name.empty() ? QString() : ToQt(name) + ": ") + ToQt(value);
  if (!question.Details.empty()) column->addWidget(NewList(question.Details), 1);
  for (const std::string& line : question.Details) lines << ToQt(line);
  column->addStretch();
  FMessage = lines.join('\n');
}

void TQuestionWindow::AddButtons(const rtl::TQuestion& question, QVBoxLayout* column) {
  auto* const box = new QHBoxLayout;
  QPushButton* defaultButton = nullptr;
  box->addStretch();
  for (int i = 0; i < static_cast<int>(question.Buttons.size()); ++i) {
    const QString caption = ToQt(question.Buttons[static_cast<size_t>(i)]);
    auto* const button = new QPushButton(caption);
    button->setObjectName(QString(caption).remove('&').remove(' '));
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, [this, i] { done(i); });
    box->addWidget(button);
    if (i == question.Default) defaultButton = button;
  }
  column->addLayout(box);
  // The focus can be set only after the layout has given the button to the window.
  defaultButton->setDefault(true);
  defaultButton->setFocus();
}

// The labels cannot be selected, because their texts hold characters that only allow a line to break.
void TQuestionWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return QGuiApplication::clipboard()->setText(FMessage);
  QDialog::keyPressEvent(event);
}

int TQuestionWindow::Run() {
  return exec();
}

}  // namespace desktop
