#include "desktop/SourceEditor.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPalette>
#include <QScopedValueRollback>
#include <QTimer>
#include <algorithm>

#include "desktop/CodePageGuess.h"
#include "desktop/QtText.h"
#include "rtl/text/Exceptions.h"
#include "win/paths/CodePage.h"

namespace desktop {

namespace {

constexpr int kTabColumns = 8;
constexpr int kIndent = 2;
constexpr int kLeastDigits = 4;  // of the line numbers
constexpr QRgb kNumbersLight = 0x606060;
constexpr QRgb kNumbersDark = 0xA8A8A8;

// The part of two texts that differs, at whole characters: [Start, OldEnd) becomes [Start, NewEnd).
struct TDifference {
  size_t Start, OldEnd, NewEnd;
};

TDifference Difference(std::string_view old, std::string_view text) {
  const auto isInside = [](char c) { return (static_cast<uint8_t>(c) & 0xC0) == 0x80; };  // of a character
  const size_t shorter = std::min(old.size(), text.size());
  size_t start = 0;
  while (start < shorter && old[start] == text[start]) ++start;
  while (start > 0 && start < shorter && (isInside(old[start]) || isInside(text[start]))) --start;
  size_t end = 0;
  while (end < shorter - start && old[old.size() - end - 1] == text[text.size() - end - 1]) ++end;
  while (end > 0 && isInside(old[old.size() - end])) --end;
  return {start, old.size() - end, text.size() - end};
}

}  // namespace

TSourceEditor::TSourceEditor(host::TFileEditor& editor, QWidget* parent)
    : QsciScintilla(parent),
      FEditor(editor),
      FModule(editor.Module()->Interface()),
      FLexer(new TSourceLexer(editor.Kind() == host::TEditorKind::Form, this)) {
  setObjectName("SourceEditor");
  setUtf8(true);
  setLexer(FLexer);
  setTabWidth(kTabColumns);
  setIndentationWidth(kIndent);
  setIndentationsUseTabs(false);
  setAutoIndent(true);
  setMarginType(0, NumberMargin);
  setMarginWidth(1, 0);
  setCaretLineVisible(true);
  SendScintilla(SCI_SETSCROLLWIDTH, 1L);
  SendScintilla(SCI_SETSCROLLWIDTHTRACKING, 1L);
  SendScintilla(SCI_SETIDLESTYLING, SC_IDLESTYLING_ALL);
  SetColors(parent->palette());
  Load();
  connect(this, &QsciScintilla::textChanged, this, [this] { TextChanged(); });
  connect(this, &QsciScintilla::modificationChanged, this, [this] { TextChanged(); });
}

// The buffer must not call a page that is gone.
TSourceEditor::~TSourceEditor() {
  disconnect(this, nullptr, this, nullptr);
  const QScopedValueRollback guard(FIsOwnChange, true);
  try {
    if (FEditor.Buffer().Modified()) static_cast<void>(FEditor.Buffer().Bytes());
  } catch (const rtl::Exception&) {
    FEditor.Buffer().Revert();  // half a form, and its page is closed
  }
}

// --- Appearance ---

void TSourceEditor::SetColors(const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base);
  const bool isDark = IsDark(palette);
  FLexer->SetPalette(palette);
  setColor(palette.color(QPalette::Text));
  setPaper(base);
  setCaretForegroundColor(palette.color(QPalette::Text));
  setCaretLineBackgroundColor(isDark ? base.lighter(130) : base.darker(105));
  setSelectionBackgroundColor(palette.color(QPalette::Highlight));
  setSelectionForegroundColor(palette.color(QPalette::HighlightedText));
  setMarginsBackgroundColor(isDark ? base.lighter(115) : base.darker(103));
  setMarginsForegroundColor(isDark ? kNumbersDark : kNumbersLight);
  setMarginsFont(SourceFont());
}

QString TSourceEditor::State() const {
  QString state = FSource->Encoding() + "    " + FSource->LineEnds();
  if (isReadOnly()) state += "    Read-only: " + FSource->ReadOnlyReason();
  return state;
}

QString TSourceEditor::Position() const {
  const long position = SendScintilla(SCI_GETCURRENTPOS);
  return QString("Line %1, Column %2")
      .arg(SendScintilla(SCI_LINEFROMPOSITION, position) + 1)
      .arg(SendScintilla(SCI_GETCOLUMN, position) + 1);
}

void TSourceEditor::GoToLine(int line) {
  setCursorPosition(std::clamp(line, 1, lines()) - 1, 0);
  SendScintilla(SCI_VERTICALCENTRECARET);
}

void TSourceEditor::SelectRange(long start, long end) {
  SendScintilla(SCI_SETSEL, static_cast<unsigned long>(start), end);
  SendScintilla(SCI_SCROLLCARET);
}

// --- Text ---

// QsciScintilla::text would end at a NUL.
QString TSourceEditor::Text() const {
  const auto* const bytes = static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
  return QString::fromUtf8(bytes, SendScintilla(SCI_GETLENGTH));
}

// Shows a text in place of the present one: as a step that can be undone, or as the first state.
void TSourceEditor::ShowText(const QString& text, bool canUndo) {
  const std::string old = FromQt(Text());
  const std::string now = FromQt(text);
  const TDifference change = Difference(old, now);
  int line = 0, column = 0;
  getCursorPosition(&line, &column);
  const int top = firstVisibleLine();
  setReadOnly(false);
  if (!canUndo) SendScintilla(SCI_SETUNDOCOLLECTION, 0L);
  SendScintilla(SCI_SETTARGETSTART, static_cast<long>(change.Start));
  SendScintilla(SCI_SETTARGETEND, static_cast<long>(change.OldEnd));
  SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(change.NewEnd - change.Start),
                now.data() + change.Start);
  if (!canUndo) SendScintilla(SCI_SETUNDOCOLLECTION, 1L);
  if (!canUndo) SendScintilla(SCI_EMPTYUNDOBUFFER);
  setReadOnly(!FSource->ReadOnlyReason().isEmpty());
  setEolMode(text.contains("\r\n") ? EolWindows : EolUnix);
  setMarginWidth(0, QString(std::max<qsizetype>(kLeastDigits, QString::number(lines()).size()) + 1, '9'));
  setCursorPosition(std::min(line, lines() - 1), column);
  setFirstVisibleLine(top);
}

void TSourceEditor::Load() {
  const QScopedValueRollback guard(FIsOwnChange, true);
  host::TFileBuffer& buffer = FEditor.Buffer();
  FSource.emplace(buffer.Bytes(), FEditor.Kind() == host::TEditorKind::Form, buffer.CodePage());
  ShowText(FSource->Text(), /*canUndo=*/false);
  if (Text() != FSource->Text()) FSource->MakeReadOnly("it holds characters that cannot be edited");
  setReadOnly(!FSource->ReadOnlyReason().isEmpty());
  FHasSavePoint = !buffer.Modified();
  SendScintilla(SCI_SETSAVEPOINT);
  const uint32_t guess = CodePage() == 0 ? 0 : GuessCodePage(buffer.Bytes(), CodePage());
  FSuggested = guess == CodePage() ? 0 : guess;
}

void TSourceEditor::BufferChanged() {
  if (FIsOwnChange) return;
  const QScopedValueRollback guard(FIsOwnChange, true);
  host::TFileBuffer& buffer = FEditor.Buffer();
  TSourceText source(buffer.Bytes(), FEditor.Kind() == host::TEditorKind::Form, buffer.CodePage());
  const bool isEditable = source.ReadOnlyReason().isEmpty() && FSource->ReadOnlyReason().isEmpty();
  FSource = std::move(source);
  if (Text() != FSource->Text()) ShowText(FSource->Text(), isEditable);
  FHasSavePoint = !buffer.Modified();
  if (FHasSavePoint) SendScintilla(SCI_SETSAVEPOINT);
}

void TSourceEditor::TextChanged() {
  if (FIsOwnChange) return;
  const QScopedValueRollback guard(FIsOwnChange, true);
  if (FHasSavePoint && !isModified()) {
    FEditor.Buffer().Revert();
  } else {
    FEditor.Buffer().SetBytesLater([this] { return Bytes(); });
  }
}

void TSourceEditor::ChangeTogether(const std::function<void()>& change) {
  {
    const QScopedValueRollback guard(FIsOwnChange, true);
    beginUndoAction();
    change();
    endUndoAction();
  }
  TextChanged();
}

std::string TSourceEditor::Bytes() const {
  QString missing;
  std::optional<std::string> bytes = FSource->Encode(Text(), missing);
  if (!bytes) throw rtl::EParserError(FromQt(FSource->Encoding() + " has no \"" + missing + "\"."));
  return std::move(*bytes);
}

// --- Code page ---

uint32_t TSourceEditor::CodePage() const {
  if (!FSource->IsInCodePage()) return 0;
  const uint32_t own = FEditor.Buffer().CodePage();
  return own != 0 ? own : win::GetACP();
}

void TSourceEditor::SetCodePage(uint32_t codePage) {
  {
    const QScopedValueRollback guard(FIsOwnChange, true);
    static_cast<void>(FEditor.Buffer().Bytes());
    FEditor.Buffer().SetCodePage(codePage);
  }
  Load();
  FSuggested = 0;  // the user has decided
}

bool TSourceEditor::Accepts(const QString& text) const {
  QString missing;
  if (FSource->CanHold(text, missing)) return true;
  const QString message = QString("\"%1\" was not entered: this file is in %2, which has no such character.")
                              .arg(missing, FSource->Encoding());
  // The message opens a window, which must not come up within a paste or a key press.
  QTimer::singleShot(0, this, [this, message] {
    if (OnRefused) OnRefused(message);
  });
  return false;
}

void TSourceEditor::keyPressEvent(QKeyEvent* event) {
  if (!event->text().isEmpty() && event->text()[0].isPrint() && !isReadOnly() && !Accepts(event->text()))
    return event->accept();
  QsciScintilla::keyPressEvent(event);
}

void TSourceEditor::inputMethodEvent(QInputMethodEvent* event) {
  if (!Accepts(event->commitString())) event->setCommitString({});
  QsciScintilla::inputMethodEvent(event);
}

QsciScintillaBase::ScintillaBytes TSourceEditor::fromMimeData(const QMimeData* source,
                                                              bool& rectangular) const {
  if (!Accepts(source->text())) return {};
  return QsciScintilla::fromMimeData(source, rectangular);
}

}  // namespace desktop
