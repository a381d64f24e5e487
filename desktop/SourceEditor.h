// The page of one file: its text, coloured, with line numbers. The host's buffer gets the edited text, and
// changes of the buffer are shown.
//
// A change that comes from outside, as from a run, is one step that the user can undo. After everything up to
// the saved state is undone, the buffer is not modified any more.
//
// A large file is loaded by a task. Until it has ended, the page shows a notice and cannot be edited.
#pragma once

#include <Qsci/qsciscintilla.h>
#include <functional>
#include <optional>
#include <string>

#include "desktop/SourceLexer.h"
#include "desktop/SourceLoading.h"
#include "host/Modules.h"

class QLabel;

namespace desktop {

class TSourceEditor : public QsciScintilla {
 public:
  // Raises the exceptions of reading a small file; OnFailed tells those of a large one. Keeps the editor's
  // module alive. `parent` must not be null; its palette gives the colours.
  TSourceEditor(host::TFileEditor& editor, QWidget* parent);
  ~TSourceEditor() override;

  host::TFileEditor& Editor() const { return FEditor; }
  // Updates the text from the buffer, unless the change came from this page. The cursor stays on its line.
  void BufferChanged();
  bool IsLoading() const { return FLoading.IsRunning(); }
  // Returns the text, which is empty until it is loaded; lines end as they do in TSourceText.
  QString Text() const;
  // Returns the texts for the status bar: "UTF-8    CR LF", with the reason if the text is read-only, and
  // "Line 12, Column 3", from 1.
  QString State() const;
  QString Position() const;
  // Returns whether the file can hold the text. If not, tells the user.
  bool Accepts(const QString& text) const;
  // Moves the cursor to a line and a column, from 1, and shows it; as soon as the file is loaded.
  void GoToLine(int line, int column = 1);
  // Selects a range, in bytes of the UTF-8 text from 0, and shows it.
  void SelectRange(long start, long end);
  // Takes the colours of a palette, light or dark. (The widget's own palette is set by its base class.)
  void SetColors(const QPalette& palette);
  // Calls `change`, which changes the text in any number of places, and makes it one step of undo.
  void ChangeTogether(const std::function<void()>& change);

  // Returns the code page in which the file is read: its own, or the source code page. 0 for files with a
  // mark, and while it is loading.
  uint32_t CodePage() const;
  // Returns the code page that the file seems to be in, if it is another one; otherwise 0.
  uint32_t SuggestedCodePage() const { return FSuggested; }
  void DismissSuggestion() { FSuggested = 0; }
  // Reads the file in another code page of win::SupportedCodePages, 0 for the source code page. Changes that
  // were made are kept as the bytes that they were, and their undo steps are gone. Raises rtl::EParserError
  // if the text is half a form; nothing has changed then.
  void SetCodePage(uint32_t codePage);

  // Called after the text has been loaded, or replaced by that of a changed buffer.
  std::function<void()> OnLoaded;
  // Called if a large file cannot be read.
  std::function<void(const std::exception& error)> OnFailed;
  // Called with a message for the user when a character was refused because the file's encoding lacks it.
  std::function<void(const QString& message)> OnRefused;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  // Files are not text: they are left to the window.
  void dragEnterEvent(QDragEnterEvent* event) override;
  ScintillaBytes fromMimeData(const QMimeData* source, bool& rectangular) const override;

 private:
  enum class TReason { First, BufferChanged, CodePageChosen };
  void Load(TReason reason);
  void ShowSource(TLoadedSource source, TReason reason);
  void ShowText(const std::string& text, bool canUndo);
  void ShowNotice(bool isLoading);
  std::string_view Utf8() const;
  void TextChanged();
  std::string Bytes() const;

  host::TFileEditor& FEditor;
  toolsapi::TIntf<toolsapi::IOTAModule> FModule;  // keeps FEditor alive
  std::optional<TSourceText> FSource;
  TSourceLexer* FLexer;
  QLabel* FNotice;
  std::optional<std::pair<int, int>> FPlace;  // line and column to show after loading
  uint32_t FSuggested = 0;
  uint64_t FVersion = 0;  // of the buffer that the text is that of
  bool FIsOwnChange = false;
  bool FHasSavePoint = false;  // whether the editor's unmodified state is that of the file
  TSourceLoading FLoading;
};

}  // namespace desktop
