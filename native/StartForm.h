// Asks for the project or folder to migrate when the program is started without one.
#pragma once

#include <optional>
#include <string>

#include "rtl/forms/Forms.h"

namespace native {

class TStartForm : public rtl::TForm {
 public:
  TStartForm();

  // Shows the form. Returns the project, a full Windows path, or an empty string for none; nullopt if the
  // user cancelled.
  std::optional<std::string> Ask();

 private:
  void Browse();
  void Accept();

  rtl::TRadioButton& FProject;
  rtl::TEdit& FProjectFile;
};

}  // namespace native
