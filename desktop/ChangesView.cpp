#include "desktop/ChangesView.h"

#include <QPlainTextEdit>

#include "desktop/RunRecord.h"
#include "desktop/SourceLexer.h"

namespace desktop {

namespace {

QPlainTextEdit* NewPage(const char* name) {
  auto* const page = new QPlainTextEdit;
  page->setObjectName(name);
  page->setReadOnly(true);
  page->setFont(SourceFont());
  page->setLineWrapMode(QPlainTextEdit::NoWrap);
  return page;
}

}  // namespace

TChangesView::TChangesView(QWidget* parent)
    : QTabWidget(parent), FLog(NewPage("Log")), FMessages(NewPage("Messages")) {
  setObjectName("ChangesView");
  setDocumentMode(true);
  addTab(FLog, "Log");
  addTab(FMessages, "Messages");
}

void TChangesView::ShowWarnings(const QString& warnings) {
  if (!warnings.isEmpty()) AddMessage(warnings);
  setCurrentWidget(warnings.isEmpty() ? FLog : FMessages);
}

void TChangesView::ShowLog(const QString& log) {
  FLog->setPlainText(log);
}

void TChangesView::AddMessage(const QString& line) {
  FMessages->appendPlainText(line);
}

}  // namespace desktop
