#include "desktop/SourceHighlighter.h"

#include <QFont>
#include <QSet>

namespace desktop {

namespace {

// The state at the end of a line: the construct that continues in the next one.
enum TState { stCode = 0, stBrace = 1, stParenthesis = 2, stDirective = 3 };

const QSet<QString>& SourceWords() {
  static const QSet<QString> words = [] {
    const QString all =
        "and array as asm begin case class const constructor destructor dispinterface div do downto else end "
        "except exports file finalization finally for function goto if implementation in inherited "
        "initialization inline interface is label library mod nil not object of or out packed private "
        "procedure program property protected public published raise record repeat resourcestring set shl "
        "shr string then threadvar to try type unit until uses var while with xor override virtual";
    const QStringList list = all.split(' ');
    return QSet<QString>(list.begin(), list.end());
  }();
  return words;
}

const QSet<QString>& FormWords() {
  static const QSet<QString> words = {"object", "inherited", "inline", "end", "item"};
  return words;
}

QTextCharFormat Format(QRgb light, QRgb dark, bool isDark, bool isBold = false) {
  QTextCharFormat format;
  format.setForeground(QColor(isDark ? dark : light));
  if (isBold) format.setFontWeight(QFont::Bold);
  return format;
}

bool IsNamePart(QChar c) {
  return c.isLetterOrNumber() || c == '_';
}

}  // namespace

TSourceHighlighter::TSourceHighlighter(QTextDocument* document, bool isForm, bool isDark)
    : QSyntaxHighlighter(document),
      FIsForm(isForm),
      FKeyword(Format(0x000080, 0x7FB2F0, isDark, true)),
      FComment(Format(0x5E7A5E, 0x85A885, isDark)),
      FDirective(Format(0x007A7A, 0x4FC1C1, isDark)),
      FString(Format(0x0000E0, 0xE0A070, isDark)),
      FNumber(Format(0x8A3A00, 0xD0C070, isDark)) {}

// Returns the position after the end of the comment, or the length of the line if the comment continues in
// the next one.
qsizetype TSourceHighlighter::EndOfComment(const QString& text, qsizetype from, const QString& closing) {
  const qsizetype found = text.indexOf(closing, from);
  return found < 0 ? text.size() : found + closing.size();
}

void TSourceHighlighter::highlightBlock(const QString& text) {
  int state = qMax(previousBlockState(), 0);
  qsizetype i = 0;
  const auto paint = [&](qsizetype end, const QTextCharFormat& format) {
    setFormat(static_cast<int>(i), static_cast<int>(end - i), format);
    i = end;
  };
  const auto comment = [&](int kind, qsizetype from) {
    const QString closing = kind == stParenthesis ? "*)" : "}";
    const qsizetype end = EndOfComment(text, from, closing);
    const bool isClosed =
        end - from >= closing.size() && text.mid(end - closing.size(), closing.size()) == closing;
    state = isClosed ? stCode : kind;
    paint(end, kind == stDirective ? FDirective : FComment);
  };
  if (state != stCode) comment(state, 0);
  while (i < text.size()) {
    const QChar c = text[i];
    const QChar next = i + 1 < text.size() ? text[i + 1] : QChar();
    if (c == '\'') {
      const qsizetype end = text.indexOf('\'', i + 1);
      paint(end < 0 ? text.size() : end + 1, FString);
    } else if (c == '{' && !FIsForm) {
      comment(next == '$' ? stDirective : stBrace, i + 1);
    } else if (c == '(' && next == '*' && !FIsForm) {
      comment(stParenthesis, i + 2);
    } else if (c == '/' && next == '/' && !FIsForm) {
      paint(text.size(), FComment);
    } else if (c.isLetter() || c == '_') {
      qsizetype end = i + 1;
      while (end < text.size() && IsNamePart(text[end])) ++end;
      const QString word = text.mid(i, end - i).toLower();
      if ((FIsForm ? FormWords() : SourceWords()).contains(word)) {
        paint(end, FKeyword);
      } else {
        i = end;
      }
    } else if (c.isDigit() || c == '$' || c == '#') {
      qsizetype end = i + 1;
      while (end < text.size() && (text[end].isLetterOrNumber() || text[end] == '.')) ++end;
      paint(end, c == '#' ? FString : FNumber);
    } else {
      ++i;
    }
  }
  setCurrentBlockState(state);
}

}  // namespace desktop
