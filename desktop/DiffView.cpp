#include "desktop/DiffView.h"

#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBlock>
#include <algorithm>

#include "desktop/DiffPane.h"

namespace desktop {

TDiffView::TDiffView(QWidget* parent)
    : QStackedWidget(parent),
      FSides(new QSplitter),
      FOld(new TDiffPane("DiffBefore", TDiffPane::TNumbers::Old, nullptr)),
      FNew(new TDiffPane("DiffAfter", TDiffPane::TNumbers::New, nullptr)),
      FUnified(new TDiffPane("Diff", TDiffPane::TNumbers::Both, nullptr)) {
  FSides->addWidget(FOld);
  FSides->addWidget(FNew);
  FSides->setChildrenCollapsible(false);
  addWidget(FSides);
  addWidget(FUnified);
  Couple(*FOld, *FNew);
  Couple(*FNew, *FOld);
  for (TDiffPane* const pane : {FOld, FNew, FUnified}) {
    pane->OnOpen = [this](int) {
      if (OnOpen) OnOpen();
    };
  }
}

// Keeps both sides at the same place.
void TDiffView::Couple(TDiffPane& from, TDiffPane& to) {
  connect(from.verticalScrollBar(), &QScrollBar::valueChanged, to.verticalScrollBar(), &QScrollBar::setValue);
  connect(from.horizontalScrollBar(), &QScrollBar::valueChanged, to.horizontalScrollBar(),
          &QScrollBar::setValue);
  connect(&from, &QPlainTextEdit::cursorPositionChanged, this, [this, &from, &to] {
    if (FIsCoupling || from.Row() == to.Row()) return;
    const QScopedValueRollback guard(FIsCoupling, true);
    const int scroll = from.verticalScrollBar()->value();
    to.setTextCursor(QTextCursor(to.document()->findBlockByNumber(from.Row())));
    to.verticalScrollBar()->setValue(scroll);
  });
}

void TDiffView::ShowPage(TDiffPage page, const TDiffLayout& layout, bool atLastChange) {
  FChanges = std::move(page.Changes);
  const bool hadFocus = CurrentPane().hasFocus();
  {
    const QScopedValueRollback guard(FIsCoupling, true);
    const TPaneText none;
    FOld->ShowText(layout.SideBySide ? page.Left : none);
    FNew->ShowText(page.Right);
    FUnified->ShowText(layout.SideBySide ? none : page.Left);
  }
  setCurrentIndex(layout.SideBySide ? 0 : 1);
  if (hadFocus) CurrentPane().setFocus();
  if (!FChanges.empty()) CurrentPane().SelectRow(atLastChange ? FChanges.back() : FChanges.front());
}

void TDiffView::ShowNote(const QString& text) {
  FChanges.clear();
  TPaneText note;
  note.Text = text;
  note.Lines = {{.Kind = TPaneLine::TKind::Fold}};
  const bool hadFocus = CurrentPane().hasFocus();
  FUnified->ShowText(note);
  setCurrentIndex(1);
  if (hadFocus) FUnified->setFocus();
}

TDiffPane& TDiffView::CurrentPane() const {
  if (currentIndex() == 1) return *FUnified;
  return FOld->hasFocus() ? *FOld : *FNew;
}

bool TDiffView::GoToChange(int step) {
  TDiffPane& pane = CurrentPane();
  const int row = pane.Row();
  if (step > 0) {
    const auto next = std::upper_bound(FChanges.begin(), FChanges.end(), row);
    if (next == FChanges.end()) return false;
    pane.SelectRow(*next);
  } else {
    const auto next = std::lower_bound(FChanges.begin(), FChanges.end(), row);
    if (next == FChanges.begin()) return false;
    pane.SelectRow(*std::prev(next));
  }
  return true;
}

void TDiffView::GoToOldLine(int line) {
  const std::vector<TPaneLine>& lines = (currentIndex() == 1 ? FUnified : FOld)->Lines();
  const auto place = std::find_if(lines.begin(), lines.end(),
                                  [line](const TPaneLine& each) { return each.OldLine >= line; });
  if (place != lines.end()) CurrentPane().SelectRow(static_cast<int>(place - lines.begin()));
}

int TDiffView::NearestLine(int TPaneLine::*number, const TDiffPane* side) const {
  const std::vector<TPaneLine>& lines = (currentIndex() == 1 ? FUnified : side)->Lines();
  for (int i = std::min(CurrentPane().Row(), static_cast<int>(lines.size()) - 1); i >= 0; --i) {
    if (const int line = lines[static_cast<size_t>(i)].*number; line > 0) return line;
  }
  return 1;
}

}  // namespace desktop
