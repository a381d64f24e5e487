// The page of one file: its text, coloured, with line numbers; what the user types goes into the host's
// buffer, and what changes there shows here.
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
  // Raises what reading the file raises. The editor is not owned; it may end before its page does,
  // which then must not be shown any more.
  TSourceEditor(host::TFileEditor& editor, QWidget* parent);
  ~TSourceEditor() override;

  host::TFileEditor& Editor() const { return FEditor; }
  // Takes the text from the buffer, unless it is this one's. The cursor stays on its line.
  void BufferChanged();
  // "UTF-8", "CR LF", why it is read-only: for the status bar.
  QString State() const;
  // Called with a line for the user when a character was refused that the file's encoding lacks.
  std::function<void(const QString& message)> OnRefused;

  // The strip with the line numbers.
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

// The typeface of sources.
QFont SourceFont();
// Whether windows are light on dark.
bool IsDark(const QWidget& widget);

}  // namespace desktop
