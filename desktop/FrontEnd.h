// The front end of the program in Qt: forms, messages and pickers as windows of the desktop.
#pragma once

#include "rtl/Application.h"

class QWidget;

namespace desktop {

class TFrontEnd : public rtl::IFrontEnd {
 public:
  // In force for its own lifetime. Makes the wait cursor of long operations, too.
  TFrontEnd();
  ~TFrontEnd() override;
  TFrontEnd(const TFrontEnd&) = delete;
  TFrontEnd& operator=(const TFrontEnd&) = delete;

  void ShowModal(rtl::TForm& form) override;
  void MessageBox(std::string_view text, std::string_view caption, unsigned flags) override;
  void MessageDlg(std::string_view text, rtl::TMsgDlgType type, rtl::TMsgDlgButton button, int helpContext) override;
  // Folder and file pickers speak the host's paths; a choice that has no Windows path is refused with a message.
  bool SelectDirectory(std::string_view caption, std::string_view root, std::string& directory) override;
  bool OpenFile(rtl::TOpenDialog& dialog) override;
  void ShowException(std::string_view message) override;

 private:
  bool TakePath(const class QString& hostPath, std::string& path);
};

// "Undo files (*.reu)|*.reu|All files (*.*)|*.*" as Qt's pickers write it.
class QString ToQtFilter(std::string_view filter);

}  // namespace desktop
