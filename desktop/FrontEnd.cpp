#include "desktop/FrontEnd.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QStringList>
#include <algorithm>

#include "desktop/FormWindow.h"
#include "desktop/QtText.h"
#include "desktop/QuestionWindow.h"
#include "qrl/QrlVcl.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

constexpr qsizetype kMostLines = 10;  // of a message box
constexpr size_t kMostMessageBytes = 1000;

void ShowWaitCursor(bool waiting) {
  if (waiting) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

QString ToHost(std::string_view path) {
  return path.empty() ? QString() : ToQt(win::ToHostName(path));
}

struct TMessageType {
  QMessageBox::Icon Icon;
  const char* Title;
};

TMessageType TypeOf(rtl::TMsgDlgType type) {
  switch (type) {
    case rtl::TMsgDlgType::Warning:
      return {QMessageBox::Warning, "Warning"};
    case rtl::TMsgDlgType::Error:
      return {QMessageBox::Critical, "Error"};
    case rtl::TMsgDlgType::Confirmation:
      return {QMessageBox::Question, "Confirm"};
    case rtl::TMsgDlgType::Information:
      break;
  }
  return {QMessageBox::Information, "Information"};
}

}  // namespace

TFrontEnd::TFrontEnd(std::string_view title) : FTitle(ToQt(title)) {
  rtl::Application().SetFrontEnd(this);
  qrl::SetWaitCursor(ShowWaitCursor);
}

TFrontEnd::~TFrontEnd() {
  qrl::SetWaitCursor(nullptr);
  rtl::Application().SetFrontEnd(nullptr);
}

void TFrontEnd::ShowModal(rtl::TForm& form) {
  BeforeModal();
  if (OnForm) OnForm(form);
  TFormWindow(form, QApplication::activeWindow()).Run();
}

void TFrontEnd::ShowMessage(int icon, const QString& title, std::string_view text) {
  BeforeModal();
  const size_t firstEnd = text.find('\n');
  if (firstEnd < kMostMessageBytes &&
      (text.size() > kMostMessageBytes || std::count(text.begin(), text.end(), '\n') > kMostLines)) {
    const unsigned flags = icon == QMessageBox::Critical ? rtl::MB_ICONERROR : rtl::MB_ICONINFORMATION;
    TQuestionWindow({.Caption = FromQt(title),
                     .Text = std::string(text.substr(0, firstEnd)),
                     .Flags = flags,
                     .Details = {std::string(text.substr(firstEnd + 1))},
                     .Buttons = {"OK"}},
                    QApplication::activeWindow())
        .Run();
    return;
  }
  QMessageBox box(static_cast<QMessageBox::Icon>(icon), title, ToQt(text), QMessageBox::Ok,
                  QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

void TFrontEnd::MessageBox(std::string_view text, std::string_view caption, unsigned flags) {
  const bool isError = (flags & rtl::MB_ICONERROR) != 0;
  FHasShownError = FHasShownError || isError;
  ShowMessage(isError ? QMessageBox::Critical : QMessageBox::Information, ToQt(caption), text);
}

void TFrontEnd::MessageDlg(std::string_view text, rtl::TMsgDlgType type, rtl::TMsgDlgButton, int) {
  const TMessageType message = TypeOf(type);
  ShowMessage(message.Icon, message.Title, text);
}

bool TFrontEnd::SelectDirectory(std::string_view caption, std::string_view root, std::string& directory) {
  BeforeModal();
  const QString start = ToHost(directory.empty() ? root : std::string_view(directory));
  const QString picked =
      QFileDialog::getExistingDirectory(QApplication::activeWindow(), ToQt(caption), start);
  return TakePath(picked, directory);
}

bool TFrontEnd::OpenFile(rtl::TOpenDialog& dialog) {
  BeforeModal();
  QFileDialog picker(QApplication::activeWindow());
  picker.setNameFilters(ToQtFilter(dialog.Filter).split(";;"));
  picker.setFileMode(dialog.FileMustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  if (!dialog.InitialDir.empty()) picker.setDirectory(ToHost(dialog.InitialDir));
  if (picker.exec() != QDialog::Accepted || picker.selectedFiles().isEmpty()) return false;
  return TakePath(picker.selectedFiles().constFirst(), dialog.FileName);
}

bool TFrontEnd::TakePath(const QString& hostPath, std::string& path) {
  if (hostPath.isEmpty()) return false;
  std::string windowsPath = win::ToWindowsPath(FromQt(hostPath));
  if (windowsPath.empty()) {
    ShowException("\"" + FromQt(hostPath) + "\" cannot be written as a Windows path.");
    return false;
  }
  path = std::move(windowsPath);
  return true;
}

void TFrontEnd::ShowException(std::string_view message) {
  ShowMessage(QMessageBox::Critical, FTitle, message);
}

std::optional<int> TFrontEnd::Ask(const rtl::TQuestion& question) {
  BeforeModal();
  FHasShownError = FHasShownError || question.Flags == rtl::MB_ICONERROR;
  return TQuestionWindow(question, QApplication::activeWindow()).Run();
}

QString ToQtFilter(std::string_view filter) {
  const QStringList parts = ToQt(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    // Windows' "all files" includes files without an extension.
    const QString pattern = parts[i + 1] == "*.*" ? "*" : QString(parts[i + 1]).replace(';', ' ');
    filters << parts[i].section(" (", 0, 0) + " (" + pattern + ")";
  }
  return filters.join(";;");
}

}  // namespace desktop
