#include "desktop/ChangesView.h"

#include <QPlainTextEdit>

#include "desktop/QtText.h"
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

void TChangesView::ShowRun(const TRunRecord& record) {
  FLog->setPlainText(ToQt(record.Log()));
  if (!record.Warnings().empty()) AddMessage(ToQt(record.Warnings()).trimmed());
  setCurrentWidget(record.Warnings().empty() ? FLog : FMessages);
}

void TChangesView::AddMessage(const QString& line) {
  FMessages->appendPlainText(line);
}

}  // namespace desktop
