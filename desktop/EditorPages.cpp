#include "desktop/EditorPages.h"

#include <QEvent>
#include <QLabel>

#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "rtl/text/SysUtils.h"

namespace desktop {

TEditorPages::TEditorPages(QWidget* parent) : QTabWidget(parent), FHint(new QLabel(this)) {
  setObjectName("Editors");
  setDocumentMode(true);
  setTabsClosable(true);
  setMovable(true);
  FHint->setObjectName("Hint");
  FHint->setAlignment(Qt::AlignCenter);
  FHint->setWordWrap(true);
  FHint->setTextInteractionFlags(Qt::TextBrowserInteraction);
  ShowLinks();
  connect(FHint, &QLabel::linkActivated, this, [this](const QString& target) {
    if (OnLink) OnLink(target);
  });
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
    page->OnLoaded = [this] {
      if (OnLoaded) OnLoaded();
    };
    page->OnFailed = [this, page](const std::exception& error) {
      RemovePage(indexOf(page));
      if (OnFailed) OnFailed(error);
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

std::vector<std::string> TEditorPages::FileNames() const {
  std::vector<std::string> names;
  std::string inFront;
  for (int i = 0; i < count(); ++i) {
    const TSourceEditor* const page = EditorAt(i);
    if (page == nullptr) continue;
    const std::string& name = page->Editor().Buffer().FileName();
    if (i == currentIndex()) {
      inFront = name;
    } else {
      names.push_back(name);
    }
  }
  if (!inFront.empty()) names.push_back(inFront);
  return names;
}

// A label takes the colour of links from the application, where it may be dark on dark.
void TEditorPages::ShowLinks() {
  const QString style = QString("<style>a { color: %1 }</style>").arg(LinkColor(palette()).name());
  if (FHint->text() != style + FHtml) FHint->setText(style + FHtml);
}

void TEditorPages::SetHint(const QString& html) {
  FHtml = html;
  ShowLinks();
}

void TEditorPages::resizeEvent(QResizeEvent* event) {
  QTabWidget::resizeEvent(event);
  FHint->setGeometry(rect());
}

void TEditorPages::tabInserted(int index) {
  QTabWidget::tabInserted(index);
  FHint->hide();
}

void TEditorPages::tabRemoved(int index) {
  QTabWidget::tabRemoved(index);
  FHint->setVisible(count() == 0);
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
  ShowLinks();
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
