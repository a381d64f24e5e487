// The last question before a run changes the open project. The user can disable it permanently.
#pragma once

#include <string>
#include <string_view>

#include "rtl/forms/Forms.h"

namespace mig {

// Asks whether to continue, and returns the answer. Returns True without asking if the user has disabled this
// question. `title` is the dialog's caption and the section of the settings. Each of the four combinations of
// arguments has its own flag there, which is written only when the user answers Yes.
[[nodiscard]] bool ShowSaveWarning(const std::string& title, bool isProject, bool isRestore);

class TSaveWarnForm : public rtl::TForm {
 public:
  TSaveWarnForm();

  void FormCreate();  // published

  rtl::TLabel& lblWarn;
  rtl::TImage& Image1;
  rtl::TLabel& lblNote;
  rtl::TCheckBox& chkDontAsk;
};

}  // namespace mig
