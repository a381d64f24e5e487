// The front end of the program in Qt: forms, messages and pickers as windows of the desktop.
#pragma once

#include <QString>
#include <functional>

#include "rtl/forms/Application.h"

namespace desktop {

class TFrontEnd : public rtl::IFrontEnd {
 public:
  // Is the application's front end for its own lifetime. Also shows the wait cursor of long operations.
  // `title` is the window title for messages of exceptions.
  explicit TFrontEnd(std::string_view title);
  ~TFrontEnd() override;
  TFrontEnd(const TFrontEnd&) = delete;
  TFrontEnd& operator=(const TFrontEnd&) = delete;

  // Called before a form, a message or a picker appears.
  std::function<void()> OnModal;
  // Called before a form appears, to fill it in.
  std::function<void(rtl::TForm& form)> OnForm;
  // Returns whether an error message was shown. Of the messages of the expert, only those of a failed
  // operation count.
  bool HasShownError() const { return FHasShownError; }

  void ShowModal(rtl::TForm& form) override;
  void MessageBox(std::string_view text, std::string_view caption, unsigned flags) override;
  void MessageDlg(std::string_view text, rtl::TMsgDlgType type, rtl::TMsgDlgButton button,
                  int helpContext) override;
  // Folder and file pickers use host paths. A choice that has no Windows path is refused with a message.
  bool SelectDirectory(std::string_view caption, std::string_view root, std::string& directory) override;
  bool OpenFile(rtl::TOpenDialog& dialog) override;
  void ShowException(std::string_view message) override;
  std::optional<int> Ask(const rtl::TQuestion& question) override;

 private:
  void BeforeModal() const {
    if (OnModal) OnModal();
  }
  // Shows a long text with its lines after the first in an area that scrolls.
  void ShowMessage(int icon, const QString& title, std::string_view text);
  bool TakePath(const QString& hostPath, std::string& path);

  QString FTitle;
  bool FHasShownError = false;
};

// Converts a filter such as "Undo files (*.reu)|*.reu|All files (*.*)|*.*" to the notation of Qt's pickers.
QString ToQtFilter(std::string_view filter);

}  // namespace desktop
