#include "rtl/forms/Application.h"

#include <cstdio>

#include "rtl/text/Exceptions.h"

namespace rtl {

TApplication& Application() {
  static TApplication application;
  return application;
}

IFrontEnd& TApplication::FrontEnd() const {
  Assert(FFrontEnd != nullptr, "No front end is set");
  return *FFrontEnd;
}

void TApplication::MessageBox(std::string_view text, std::string_view caption, unsigned flags) {
  FrontEnd().MessageBox(text, caption, flags);
}

std::optional<int> TApplication::Ask(const TQuestion& question) {
  return FrontEnd().Ask(question);
}

void TApplication::HandleException(const std::exception& exception) {
  if (dynamic_cast<const EAbort*>(&exception) != nullptr) return;
  if (HasFrontEnd()) {
    FrontEnd().ShowException(exception.what());
  } else {
    std::fprintf(stderr, "%s\n", exception.what());
  }
}

bool TOpenDialog::Execute() {
  return Application().FrontEnd().OpenFile(*this);
}

void MessageDlg(std::string_view text, TMsgDlgType type, TMsgDlgButton button, int helpContext) {
  Application().FrontEnd().MessageDlg(text, type, button, helpContext);
}

bool SelectDirectory(std::string_view caption, std::string_view root, std::string& directory) {
  return Application().FrontEnd().SelectDirectory(caption, root, directory);
}

}  // namespace rtl
