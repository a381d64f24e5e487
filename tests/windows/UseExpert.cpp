// Loads a wizard module in the host, opens a project, and uses the wizard with the default button of every
// form.
//
//   useexpert MODULE PROJECT
//
// Prints the captions of the forms and the messages.
#include <cstdio>
#include <string>

#include "host/Host.h"
#include "rtl/forms/Application.h"
#include "rtl/forms/Forms.h"
#include "win/Diagnostics.h"
#include "win/paths/Drives.h"

namespace {

constexpr int kMostClicks = 20;

class TFrontEnd : public rtl::IFrontEnd {
 public:
  void ShowModal(rtl::TForm& form) override {
    for (int i = 0; i < kMostClicks && form.ModalResult() == rtl::mrNone; ++i) {
      Print("[" + form.Caption() + "]");
      form.UpdateActions();
      form.DefaultButton()->Click();
    }
  }
  void MessageBox(std::string_view text, std::string_view caption, unsigned) override {
    Print(std::string(caption) + ": " + std::string(text));
  }
  void MessageDlg(std::string_view text, rtl::TMsgDlgType, rtl::TMsgDlgButton, int) override {
    Print(std::string(text));
  }
  bool SelectDirectory(std::string_view, std::string_view, std::string&) override { return false; }
  bool OpenFile(rtl::TOpenDialog&) override { return false; }
  void ShowException(std::string_view message) override { Print("exception: " + std::string(message)); }

 private:
  static void Print(const std::string& line) { std::printf("%s\n", line.c_str()); }
};

// Returns the item that the wizard has added: the only one with this caption.
rtl::TMenuItem* FindItem(rtl::TMenuItem& menu, std::string_view caption) {
  if (menu.Caption() == caption) return &menu;
  for (int i = 0; i < menu.Count(); ++i) {
    if (rtl::TMenuItem* const item = FindItem(menu[i], caption)) return item;
  }
  return nullptr;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  TFrontEnd frontEnd;
  rtl::Application().SetFrontEnd(&frontEnd);
  win::SetDiagnosticsSink([](std::string_view line) { std::printf("%s\n", std::string(line).c_str()); });
  try {
    host::THost host;
    host.LoadWizardModule(win::ToWindowsPath(arguments[1]));
    if (!host.OpenProject(win::ToWindowsPath(arguments[2]), /*newGroup=*/true)) return 1;
    rtl::TMenuItem* const item = FindItem(host.MainMenu().Items(), "&Migration Wizard");
    if (item == nullptr) return 1;
    item->Click();
  } catch (const std::exception& error) {
    std::printf("%s\n", error.what());
    return 1;
  }
  return 0;
}
