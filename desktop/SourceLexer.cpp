#include "desktop/SourceLexer.h"

#include <QFontDatabase>
#include <QPalette>
#include <QWidget>

namespace desktop {

namespace {

constexpr int kDarkBelow = 128;  // lightness of a page
constexpr QRgb kLinkDark = 0x6CB6FF;

// Scintilla has one list of words for the Pascal lexer, in lower case.
constexpr char kSourceWords[] =
    "and array as asm begin case class const constructor destructor dispinterface div do downto else end "
    "except "
    "exports file finalization finally for function goto if implementation in inherited initialization "
    "inline "
    "interface is label library mod nil not object of or out override packed private procedure program "
    "property "
    "protected public published raise record repeat resourcestring set shl shr string then threadvar to try "
    "type "
    "unit until uses var virtual while with xor";
constexpr char kFormWords[] = "end inherited inline item object";

struct TStyle {
  int Style;
  QRgb Light, Dark;
};
constexpr QRgb kComment[] = {0x4A6A4A, 0x85A885};
constexpr QRgb kDirective[] = {0x007070, 0x4FC1C1};
constexpr QRgb kNumber[] = {0x8A3A00, 0xD0C070};
constexpr QRgb kString[] = {0x0000E0, 0xE0A070};
constexpr TStyle kColors[] = {
    {TSourceLexer::Comment, kComment[0], kComment[1]},
    {TSourceLexer::CommentParenthesis, kComment[0], kComment[1]},
    {TSourceLexer::CommentLine, kComment[0], kComment[1]},
    {TSourceLexer::PreProcessor, kDirective[0], kDirective[1]},
    {TSourceLexer::PreProcessorParenthesis, kDirective[0], kDirective[1]},
    {TSourceLexer::Number, kNumber[0], kNumber[1]},
    {TSourceLexer::HexNumber, kNumber[0], kNumber[1]},
    {TSourceLexer::Keyword, 0x000080, 0x7FB2F0},
    {TSourceLexer::SingleQuotedString, kString[0], kString[1]},
    {TSourceLexer::UnclosedString, kString[0], kString[1]},
    {TSourceLexer::Character, kString[0], kString[1]},
};

}  // namespace

QFont SourceFont() {
  return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < kDarkBelow;
}

bool IsDark(const QWidget& widget) {
  return IsDark(widget.palette());
}

QColor LinkColor(const QPalette& palette) {
  return IsDark(palette) ? QColor(kLinkDark) : palette.color(QPalette::Link);
}

TSourceLexer::TSourceLexer(bool isForm, QObject* parent) : QsciLexerPascal(parent), FIsForm(isForm) {
  setSmartHighlighting(false);  // it knows `read` and `write` of properties only in classes of one unit
  const QFont font = SourceFont();
  setDefaultFont(font);
  setFont(font);
  QFont bold = font;
  bold.setBold(true);
  setFont(bold, Keyword);
}

void TSourceLexer::SetPalette(const QPalette& palette) {
  setDefaultColor(palette.color(QPalette::Text));
  setDefaultPaper(palette.color(QPalette::Base));
  setColor(palette.color(QPalette::Text));
  setPaper(palette.color(QPalette::Base));
  for (const TStyle& style : kColors) {
    // In a form, braces hold the bytes of a property.
    const bool isData = FIsForm && style.Style == Comment;
    const QRgb light = isData ? kNumber[0] : style.Light;
    const QRgb dark = isData ? kNumber[1] : style.Dark;
    setColor(QColor(IsDark(palette) ? dark : light), style.Style);
  }
}

const char* TSourceLexer::keywords(int set) const {
  if (set != 1) return nullptr;
  return FIsForm ? kFormWords : kSourceWords;
}

}  // namespace desktop
