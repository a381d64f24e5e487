// Colours for Delphi source, and for forms in their text form.
#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace desktop {

class TSourceHighlighter : public QSyntaxHighlighter {
 public:
  // `isDark` is that of the page which `document` is shown on.
  TSourceHighlighter(QTextDocument* document, bool isForm, bool isDark);

 protected:
  void highlightBlock(const QString& text) override;

 private:
  qsizetype EndOfComment(const QString& text, qsizetype from, const QString& closing);

  bool FIsForm;
  QTextCharFormat FKeyword, FComment, FDirective, FString, FNumber;
};

}  // namespace desktop
