// Syntax colours for Delphi source and for text forms.
#pragma once

#include <Qsci/qscilexerpascal.h>

namespace desktop {

class TSourceLexer : public QsciLexerPascal {
 public:
  TSourceLexer(bool isForm, QObject* parent);

  // Takes the colours for a page of that palette, light or dark.
  void SetPalette(const QPalette& palette);

  const char* keywords(int set) const override;

 private:
  bool FIsForm;
};

// Returns the font of source text.
QFont SourceFont();
// Returns whether a palette, or a widget, shows light text on a dark background.
bool IsDark(const QPalette& palette);
bool IsDark(const QWidget& widget);
// Returns a colour of links that is legible on the page of a palette. Not every dark palette has one.
QColor LinkColor(const QPalette& palette);

}  // namespace desktop
