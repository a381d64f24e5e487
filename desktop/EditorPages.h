// The middle of the host's window: one tab for each open editor. Other pages, such as a review of changes,
// can be added as tabs of their own.
//
//   auto* const pages = new TEditorPages(nullptr);
//   pages->Show(editor);                   // opens its page, or brings it to the front
//   pages->CurrentEditor()->State();
//   pages->addTab(review, "Review");       // a page without an editor
#pragma once

#include <QTabWidget>
#include <functional>
#include <string>
#include <vector>

class QLabel;

namespace host {
class TFileBuffer;
class TFileEditor;
}  // namespace host

namespace desktop {

class TSourceEditor;

class TEditorPages : public QTabWidget {
 public:
  explicit TEditorPages(QWidget* parent);
  // Deletes the pages. Their editors must still exist.
  ~TEditorPages() override;

  // Brings the page of the editor to the front, and makes it if there is none. Raises the exceptions of
  // reading a small file; there is no new page then. The page of a large one is closed if it cannot be read,
  // and OnFailed called. The editor is not owned.
  void Show(host::TFileEditor& editor);
  // Returns the editor of the page in front, or null if there is none or the page has no editor.
  TSourceEditor* CurrentEditor() const { return EditorAt(currentIndex()); }
  // Returns the editor of a page, or null if the page has no editor. `index` is 0-based.
  TSourceEditor* EditorAt(int index) const;
  // Returns the editor that shows the buffer, or null.
  TSourceEditor* EditorOf(const host::TFileBuffer& buffer) const;
  // Closes a page. It is deleted after the current event, which may be the page's own key press.
  void RemovePage(int index);
  // Closes the pages whose modules the host has closed.
  void RemoveClosed();
  // Shows the names of the files as the titles of the tabs, with a star for modified ones.
  void ShowTitles();

  // Returns the full Windows paths of the files on the pages, the one in front last.
  std::vector<std::string> FileNames() const;
  // Sets the text, as HTML, that is shown while there are no pages. OnLink is called with the target of a
  // link that the user clicks.
  void SetHint(const QString& html);
  std::function<void(const QString& target)> OnLink;

  // Called with a message for the user when an editor refused a character.
  std::function<void(const QString& message)> OnRefused;
  // Called after an editor has loaded its text, and if it failed to.
  std::function<void()> OnLoaded;
  std::function<void(const std::exception& error)> OnFailed;
  // Called after the cursor of an editor has moved.
  std::function<void()> OnMoved;

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void tabInserted(int index) override;
  void tabRemoved(int index) override;

 private:
  void ShowLinks();

  QLabel* FHint;
  QString FHtml;  // of the hint
};

}  // namespace desktop
