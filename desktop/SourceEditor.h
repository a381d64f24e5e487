// The page of one file: its text, coloured, with line numbers. Typed text goes to the host's buffer, and
// changes of the buffer are shown.
#pragma once

#include <QPlainTextEdit>
#include <QSyntaxHighlighter>
#include <functional>
#include <memory>
#include <optional>

#include "desktop/SourceText.h"
#include "host/Modules.h"

namespace desktop {

class TSourceEditor : public QPlainTextEdit {
 public:
  // Raises the exceptions of reading the file. Does not own the editor. If the editor is destroyed before
  // the page, the page must not be shown any more.
  TSourceEditor(host::TFileEditor& editor, QWidget* parent);
  ~TSourceEditor() override;

  host::TFileEditor& Editor() const { return FEditor; }
  // Updates the text from the buffer, unless the change came from this page. The cursor stays on its line.
  void BufferChanged();
  // Returns the text for the status bar: "UTF-8", "CR LF", and the reason if the text is read-only.
  QString State() const;
  // Called with a message for the user when a character was refused because the file's encoding lacks it.
  std::function<void(const QString& message)> OnRefused;

  // The margin with the line numbers.
  int NumbersWidth() const;
  void PaintNumbers(QPaintEvent& event);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Load();
  void SetColors();
  void TextChanged(int position, int added);
  QString DocumentText() const;

  host::TFileEditor& FEditor;
  std::optional<TSourceText> FSource;
  std::unique_ptr<QSyntaxHighlighter> FHighlighter;
  QWidget* FNumbers;
  bool FIsOwnChange = false;
};

// Returns the font of source text.
QFont SourceFont();
// Returns whether the widget shows light text on a dark background.
bool IsDark(const QWidget& widget);

}  // namespace desktop
