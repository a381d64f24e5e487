// The bar below the editors that finds and replaces in the editor on the page in front.
#pragma once

#include <QWidget>
#include <functional>

#include "desktop/TextSearch.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace desktop {

class TFindBar : public QWidget {
 public:
  // `editor` returns the editor to search in, or null.
  TFindBar(std::function<TSourceEditor*()> editor, QWidget* parent);

  // Shows the bar, with or without the row for replacing, and takes the selected text as what is searched
  // for.
  void Open(bool withReplace);
  // Repeats the last search. Opens the bar if there was none.
  void FindAgain(bool forward);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QToolButton* AddButton(const char* name, const char* text, const char* hint, std::function<void()> onClick);
  TTextSearch Search() const;
  void Perform(const std::function<QString(TSourceEditor& editor)>& search);
  void Close();

  std::function<TSourceEditor*()> FEditor;
  QLineEdit* FText;
  QLineEdit* FReplacement;
  QCheckBox* FCase;
  QCheckBox* FWords;
  QCheckBox* FRegExp;
  QLabel* FOutcome;
  QWidget* FReplaceRow;
};

}  // namespace desktop
