// The front end of the program with the system's own windows: forms, messages and pickers.
#pragma once

#include <functional>
#include <string>

#include "native/ApplicationWindow.h"
#include "rtl/forms/Application.h"

namespace native {

class TFrontEnd : public rtl::IFrontEnd {
 public:
  // Is the application's front end for its own lifetime. Also shows the wait cursor of long operations.
  // `title` is the program's name, and the caption for messages of exceptions.
  explicit TFrontEnd(std::string_view title);
  ~TFrontEnd() override;
  TFrontEnd(const TFrontEnd&) = delete;
  TFrontEnd& operator=(const TFrontEnd&) = delete;

  // Called before a form, a message or a picker appears.
  std::function<void()> OnModal;
  // Called for the F1 key in a form.
  std::function<void()> OnHelp;
  // Returns whether an error message was shown.
  bool HasShownError() const { return FHasShownError; }
  HWND Owner() const { return FApplication.Owner(); }

  void ShowModal(rtl::TForm& form) override;
  void MessageBox(std::string_view text, std::string_view caption, unsigned flags) override;
  void MessageDlg(std::string_view text, rtl::TMsgDlgType type, rtl::TMsgDlgButton button,
                  int helpContext) override;
  bool SelectDirectory(std::string_view caption, std::string_view root, std::string& directory) override;
  bool OpenFile(rtl::TOpenDialog& dialog) override;
  void ShowException(std::string_view message) override;
  std::optional<int> Ask(const rtl::TQuestion& question) override;

 private:
  void BeforeModal() const {
    if (OnModal) OnModal();
  }
  void ShowMessage(std::string_view text, std::string_view caption, unsigned flags);

  std::string FTitle;
  TApplicationWindow FApplication;
  bool FHasShownError = false;
};

}  // namespace native
