#include "desktop/FindBar.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"

namespace desktop {

namespace {

constexpr int kLeastWidth = 14;  // of a field, in average characters

QLineEdit* NewField(const char* name, const char* hint) {
  auto* const field = new QLineEdit;
  field->setObjectName(name);
  field->setPlaceholderText(hint);
  field->setMinimumWidth(field->fontMetrics().averageCharWidth() * kLeastWidth);
  return field;
}

QCheckBox* NewOption(const char* name, const char* text) {
  auto* const option = new QCheckBox(text);
  option->setObjectName(name);
  return option;
}

}  // namespace

TFindBar::TFindBar(std::function<TSourceEditor*()> editor, QWidget* parent)
    : QWidget(parent),
      FEditor(std::move(editor)),
      FText(NewField("FindText", "Find")),
      FReplacement(NewField("ReplaceText", "Replace by")),
      FCase(NewOption("FindCase", "Match &case")),
      FWords(NewOption("FindWords", "Whole &words")),
      FRegExp(NewOption("FindRegExp", "Regular e&xpression")),
      FOutcome(new QLabel),
      FReplaceRow(new QWidget) {
  setObjectName("FindBar");
  FOutcome->setObjectName("FindOutcome");
  auto* const findRow = new QHBoxLayout;
  const auto next = [this] { FindAgain(/*forward=*/true); };
  const auto previous = [this] { FindAgain(/*forward=*/false); };
  findRow->addWidget(FText, 1);
  findRow->addWidget(AddButton("FindNext", "&Next", "Find the next match (Enter, F3)", next));
  findRow->addWidget(AddButton("FindPrevious", "&Previous", "Find the previous match (Shift+F3)", previous));
  for (QCheckBox* const option : {FCase, FWords, FRegExp}) findRow->addWidget(option);
  findRow->addWidget(AddButton("FindClose", "\u2715", "Close (Esc)", [this] { Close(); }));

  auto* const replaceRow = new QHBoxLayout(FReplaceRow);
  replaceRow->setContentsMargins(0, 0, 0, 0);
  replaceRow->addWidget(FReplacement, 1);
  replaceRow->addWidget(AddButton("Replace", "&Replace", "Replace this match, and find the next one", [this] {
    Perform([this](TSourceEditor& page) {
      return Search().Replace(page, FReplacement->text()) ? QString() : QString("No further match");
    });
  }));
  replaceRow->addWidget(AddButton("ReplaceAll", "Replace &All", "Replace all matches in this file", [this] {
    Perform([this](TSourceEditor& page) {
      const int count = Search().ReplaceAll(page, FReplacement->text());
      return count == 0 ? QString("No match") : QString("%L1 replaced").arg(count);
    });
  }));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 4, 6, 4);
  layout->setSpacing(4);
  layout->addLayout(findRow);
  layout->addWidget(FReplaceRow);
  layout->addWidget(FOutcome);
  connect(FText, &QLineEdit::returnPressed, this, next);
  connect(FText, &QLineEdit::textChanged, FOutcome, &QLabel::clear);
  hide();
}

QToolButton* TFindBar::AddButton(const char* name, const char* text, const char* hint,
                                 std::function<void()> onClick) {
  auto* const button = new QToolButton;
  button->setObjectName(name);
  button->setText(text);
  button->setToolTip(hint);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::clicked, this, std::move(onClick));
  return button;
}

TTextSearch TFindBar::Search() const {
  return {FText->text(), FRegExp->isChecked(), FCase->isChecked(), FWords->isChecked()};
}

void TFindBar::Open(bool withReplace) {
  FReplaceRow->setVisible(withReplace);
  FOutcome->hide();
  show();
  if (const TSourceEditor* const page = FEditor()) {
    const QString selected = page->selectedText();
    if (!selected.isEmpty() && !selected.contains('\n')) FText->setText(selected);
  }
  FText->setFocus();
  FText->selectAll();
}

void TFindBar::FindAgain(bool forward) {
  if (FText->text().isEmpty()) return Open(/*withReplace=*/false);
  Perform([&](TSourceEditor& page) {
    return Search().FindNext(page, forward) ? QString() : QString("No match");
  });
}

// Shows the text that `search` returns as its outcome.
void TFindBar::Perform(const std::function<QString(TSourceEditor& editor)>& search) {
  TSourceEditor* const page = FEditor();
  if (page == nullptr) return;
  QString outcome;
  try {
    outcome = search(*page);
  } catch (const ESearch& error) {
    outcome = ToQt(error.what());
  }
  FOutcome->setText(outcome);
  FOutcome->setVisible(!outcome.isEmpty());
}

void TFindBar::Close() {
  hide();
  if (TSourceEditor* const page = FEditor()) page->setFocus();
}

void TFindBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return Close();
  QWidget::keyPressEvent(event);
}

}  // namespace desktop
