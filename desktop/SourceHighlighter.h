// Syntax colours for Delphi source and for text forms.
#pragma once

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace desktop {

class TSourceHighlighter : public QSyntaxHighlighter {
 public:
  // `isDark` says whether the page that shows `document` is dark.
  TSourceHighlighter(QTextDocument* document, bool isForm, bool isDark);

 protected:
  void highlightBlock(const QString& text) override;

 private:
  qsizetype EndOfComment(const QString& text, qsizetype from, const QString& closing);

  bool FIsForm;
  QTextCharFormat FKeyword, FComment, FDirective, FString, FNumber;
};

}  // namespace desktop
