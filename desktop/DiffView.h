// Shows the differences of one file, side by side or in one column, and moves from change to change.
#pragma once

#include <QStackedWidget>
#include <functional>

#include "desktop/FileDiff.h"

class QSplitter;

namespace desktop {

class TDiffPane;

class TDiffView : public QStackedWidget {
 public:
  explicit TDiffView(QWidget* parent);

  // Shows a page that was made for the layout, with the cursor on its first or last change.
  void ShowPage(TDiffPage page, const TDiffLayout& layout, bool atLastChange);
  // Shows a sentence in place of a diff.
  void ShowNote(const QString& text);

  // Moves the cursor to the next change (`step` 1) or to the previous one (-1). Returns false, without an
  // effect, if there is none.
  bool GoToChange(int step);
  // Moves the cursor to a line of the old version, from 1, or the nearest one after it that is shown.
  void GoToOldLine(int line);
  // Return the line of the new or the old version at the cursor, or the nearest one above it; at least 1.
  int NewLine() const { return NearestLine(&TPaneLine::NewLine, FNew); }
  int OldLine() const { return NearestLine(&TPaneLine::OldLine, FOld); }
  TDiffPane& CurrentPane() const;

  // Called when the user opens the line at the cursor.
  std::function<void()> OnOpen;

 private:
  void Couple(TDiffPane& from, TDiffPane& to);
  int NearestLine(int TPaneLine::*number, const TDiffPane* side) const;

  QSplitter* FSides;
  TDiffPane* FOld;
  TDiffPane* FNew;
  TDiffPane* FUnified;
  std::vector<int> FChanges;
  bool FIsCoupling = false;
};

}  // namespace desktop
