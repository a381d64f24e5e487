#include "desktop/SourceEditor.h"

#include <QDragEnterEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QPalette>
#include <QScopedValueRollback>
#include <QTimer>
#include <algorithm>

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
      FLexer(new TSourceLexer(editor.Kind() == host::TEditorKind::Form, this)),
      FNotice(new QLabel("Loading...", this)) {
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
  FNotice->setObjectName("LoadingNotice");
  FNotice->setAlignment(Qt::AlignCenter);
  FNotice->setAutoFillBackground(true);
  FNotice->hide();
  SetColors(parent->palette());
  FLoading.OnFailed = [this](const std::exception& error) {
    if (OnFailed) OnFailed(error);
  };
  Load(TReason::First);
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
  if (IsLoading()) return "Loading...";
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

void TSourceEditor::GoToLine(int line, int column) {
  if (IsLoading()) {
    FPlace = {line, column};
    return;
  }
  setCursorPosition(std::clamp(line, 1, lines()) - 1, column - 1);
  SendScintilla(SCI_VERTICALCENTRECARET);
}

void TSourceEditor::SelectRange(long start, long end) {
  SendScintilla(SCI_SETSEL, static_cast<unsigned long>(start), end);
  SendScintilla(SCI_SCROLLCARET);
}

// --- Text ---

// QsciScintilla::text would end at a NUL.
std::string_view TSourceEditor::Utf8() const {
  const auto* const bytes = static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
  return {bytes, static_cast<size_t>(SendScintilla(SCI_GETLENGTH))};
}

QString TSourceEditor::Text() const {
  return ToQt(Utf8());
}

// Shows a text in place of the present one: as a step that can be undone, or as the first state.
void TSourceEditor::ShowText(const std::string& text, bool canUndo) {
  const TDifference change = Difference(Utf8(), text);
  int line = 0, column = 0;
  getCursorPosition(&line, &column);
  const int top = firstVisibleLine();
  setReadOnly(false);
  if (!canUndo) SendScintilla(SCI_SETUNDOCOLLECTION, 0L);
  SendScintilla(SCI_SETTARGETSTART, static_cast<long>(change.Start));
  SendScintilla(SCI_SETTARGETEND, static_cast<long>(change.OldEnd));
  SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(change.NewEnd - change.Start),
                text.data() + change.Start);
  if (!canUndo) SendScintilla(SCI_SETUNDOCOLLECTION, 1L);
  if (!canUndo) SendScintilla(SCI_EMPTYUNDOBUFFER);
  setEolMode(text.find("\r\n") != std::string::npos ? EolWindows : EolUnix);
  setMarginWidth(0, QString(std::max<qsizetype>(kLeastDigits, QString::number(lines()).size()) + 1, '9'));
  setCursorPosition(std::min(line, lines() - 1), column);
  setFirstVisibleLine(top);
}

// --- Loading ---

void TSourceEditor::Load(TReason reason) {
  FLoading.OnLoaded = [this, reason](TLoadedSource source) { ShowSource(std::move(source), reason); };
  FLoading.Start(FEditor.Buffer(), FEditor.Kind() == host::TEditorKind::Form);
  if (IsLoading()) ShowNotice(true);
}

void TSourceEditor::ShowNotice(bool isLoading) {
  if (isLoading) setReadOnly(true);  // until the text is that of the buffer
  FNotice->setGeometry(rect());
  FNotice->setVisible(isLoading);
}

void TSourceEditor::resizeEvent(QResizeEvent* event) {
  QsciScintilla::resizeEvent(event);
  FNotice->setGeometry(rect());
}

void TSourceEditor::ShowSource(TLoadedSource source, TReason reason) {
  {
    const QScopedValueRollback guard(FIsOwnChange, true);
    const bool canUndo = reason == TReason::BufferChanged && FSource && FSource->ReadOnlyReason().isEmpty() &&
                         source.Text.ReadOnlyReason().isEmpty();
    FSource = std::move(source.Text);
    if (reason == TReason::First) FSuggested = source.Guess;
    if (reason == TReason::CodePageChosen) FSuggested = 0;
    const std::string text = FromQt(FSource->Text());
    if (!canUndo || Utf8() != text) ShowText(text, canUndo);
    if (Utf8() != text) FSource->MakeReadOnly("it holds characters that cannot be edited");
    setReadOnly(!FSource->ReadOnlyReason().isEmpty());
    FVersion = FEditor.Buffer().Version();
    FHasSavePoint = !FEditor.Buffer().Modified();
    if (FHasSavePoint || !canUndo) SendScintilla(SCI_SETSAVEPOINT);
    ShowNotice(false);
  }
  if (const auto place = std::exchange(FPlace, std::nullopt)) GoToLine(place->first, place->second);
  if (OnLoaded) OnLoaded();
}

void TSourceEditor::BufferChanged() {
  if (FIsOwnChange) return;
  const host::TFileBuffer& buffer = FEditor.Buffer();
  if (buffer.Version() != FVersion || IsLoading()) {
    Load(FSource ? TReason::BufferChanged : TReason::First);
  } else if (!buffer.Modified()) {  // it was saved
    const QScopedValueRollback guard(FIsOwnChange, true);
    FHasSavePoint = true;
    SendScintilla(SCI_SETSAVEPOINT);
  }
}

void TSourceEditor::TextChanged() {
  if (FIsOwnChange) return;
  const QScopedValueRollback guard(FIsOwnChange, true);
  if (FHasSavePoint && !isModified()) {
    FEditor.Buffer().Revert();
  } else {
    FEditor.Buffer().SetBytesLater([this] { return Bytes(); });
  }
  FVersion = FEditor.Buffer().Version();
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
  if (IsLoading() || !FSource->IsInCodePage()) return 0;
  const uint32_t own = FEditor.Buffer().CodePage();
  return own != 0 ? own : win::GetACP();
}

void TSourceEditor::SetCodePage(uint32_t codePage) {
  host::TFileBuffer& buffer = FEditor.Buffer();
  {
    const QScopedValueRollback guard(FIsOwnChange, true);
    if (buffer.Modified()) static_cast<void>(buffer.Bytes());
    buffer.SetCodePage(codePage);
  }
  Load(TReason::CodePageChosen);
}

bool TSourceEditor::Accepts(const QString& text) const {
  if (IsLoading()) return false;
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

void TSourceEditor::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) return event->ignore();
  QsciScintilla::dragEnterEvent(event);
}

QsciScintillaBase::ScintillaBytes TSourceEditor::fromMimeData(const QMimeData* source,
                                                              bool& rectangular) const {
  if (!Accepts(source->text())) return {};
  return QsciScintilla::fromMimeData(source, rectangular);
}

}  // namespace desktop
