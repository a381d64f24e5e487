// The page of one file: its text, coloured, with line numbers. The host's buffer gets the edited text, and changes
// of the buffer are shown.
//
// A change that comes from outside, as from a run, is one step that the user can undo. After everything up to the
// saved state is undone, the buffer is not modified any more.
#pragma once

#include <Qsci/qsciscintilla.h>
#include <functional>
#include <optional>
#include <string>

#include "desktop/SourceLexer.h"
#include "desktop/SourceText.h"
#include "host/Modules.h"

namespace desktop {

class TSourceEditor : public QsciScintilla {
 public:
  // Raises the exceptions of reading the file. Keeps the editor's module alive.
  // `parent` must not be null; its palette gives the colours.
  TSourceEditor(host::TFileEditor& editor, QWidget* parent);
  ~TSourceEditor() override;

  host::TFileEditor& Editor() const { return FEditor; }
  // Updates the text from the buffer, unless the change came from this page. The cursor stays on its line.
  void BufferChanged();
  // Returns the text; lines end as they do in TSourceText.
  QString Text() const;
  // Returns the texts for the status bar: "UTF-8    CR LF", with the reason if the text is read-only, and
  // "Line 12, Column 3", from 1.
  QString State() const;
  QString Position() const;
  // Returns whether the file can hold the text. If not, tells the user.
  bool Accepts(const QString& text) const;
  // Moves the cursor to the beginning of a line, from 1, and shows it.
  void GoToLine(int line);
  // Selects a range, in bytes of the UTF-8 text from 0, and shows it.
  void SelectRange(long start, long end);
  // Takes the colours of a palette, light or dark. (The widget's own palette is set by its base class.)
  void SetColors(const QPalette& palette);
  // Calls `change`, which changes the text in any number of places, and makes it one step of undo.
  void ChangeTogether(const std::function<void()>& change);

  // Returns the code page in which the file is read: its own, or the source code page. 0 for files with a mark.
  uint32_t CodePage() const;
  // Returns the code page that the file seems to be in, if it is another one; otherwise 0.
  uint32_t SuggestedCodePage() const { return FSuggested; }
  void DismissSuggestion() { FSuggested = 0; }
  // Reads the file in another code page of win::SupportedCodePages, 0 for the source code page. Changes that were
  // made are kept as the bytes that they were, and their undo steps are gone. Raises
  // rtl::EParserError if the text is half a form; nothing has changed then.
  void SetCodePage(uint32_t codePage);

  // Called with a message for the user when a character was refused because the file's encoding lacks it.
  std::function<void(const QString& message)> OnRefused;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  ScintillaBytes fromMimeData(const QMimeData* source, bool& rectangular) const override;

 private:
  void ShowText(const QString& text, bool canUndo);
  void Load();
  void TextChanged();
  std::string Bytes() const;

  host::TFileEditor& FEditor;
  toolsapi::TIntf<toolsapi::IOTAModule> FModule;  // keeps FEditor alive
  std::optional<TSourceText> FSource;
  TSourceLexer* FLexer;
  uint32_t FSuggested = 0;
  bool FIsOwnChange = false;
  bool FHasSavePoint = false;  // whether the editor's unmodified state is that of the file
};

}  // namespace desktop
