#include "desktop/EditorPages.h"

#include <QEvent>

#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "rtl/text/SysUtils.h"

namespace desktop {

TEditorPages::TEditorPages(QWidget* parent) : QTabWidget(parent) {
  setObjectName("Editors");
  setDocumentMode(true);
  setTabsClosable(true);
  setMovable(true);
}

TEditorPages::~TEditorPages() {
  blockSignals(true);
  while (count() > 0) delete widget(0);
}

void TEditorPages::Show(host::TFileEditor& editor) {
  TSourceEditor* page = EditorOf(editor.Buffer());
  if (page == nullptr) {
    page = new TSourceEditor(editor, this);
    page->OnRefused = [this](const QString& message) {
      if (OnRefused) OnRefused(message);
    };
    connect(page, &QsciScintilla::cursorPositionChanged, this, [this] {
      if (OnMoved) OnMoved();
    });
    addTab(page, "");
    setTabToolTip(indexOf(page), ToQt(editor.Buffer().FileName()));
    ShowTitles();
  }
  setCurrentWidget(page);
  page->setFocus();
}

TSourceEditor* TEditorPages::EditorAt(int index) const {
  return dynamic_cast<TSourceEditor*>(widget(index));
}

TSourceEditor* TEditorPages::EditorOf(const host::TFileBuffer& buffer) const {
  for (int i = 0; i < count(); ++i) {
    TSourceEditor* const page = EditorAt(i);
    if (page != nullptr && &page->Editor().Buffer() == &buffer) return page;
  }
  return nullptr;
}

void TEditorPages::RemovePage(int index) {
  QWidget* const page = widget(index);
  removeTab(index);
  page->deleteLater();
}

void TEditorPages::RemoveClosed() {
  for (int i = count() - 1; i >= 0; --i) {
    const TSourceEditor* const page = EditorAt(i);
    if (page != nullptr && page->Editor().Module() == nullptr) RemovePage(i);
  }
}

void TEditorPages::changeEvent(QEvent* event) {
  QTabWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  for (int i = 0; i < count(); ++i) {
    if (TSourceEditor* const page = EditorAt(i)) page->SetColors(palette());
  }
}

void TEditorPages::ShowTitles() {
  for (int i = 0; i < count(); ++i) {
    const TSourceEditor* const page = EditorAt(i);
    if (page == nullptr) continue;
    const host::TFileBuffer& buffer = page->Editor().Buffer();
    const QString title = ToQt(rtl::ExtractFileName(buffer.FileName())).replace("&", "&&");
    setTabText(i, buffer.Modified() ? title + " *" : title);
  }
}

}  // namespace desktop
