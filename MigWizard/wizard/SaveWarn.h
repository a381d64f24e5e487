// The last question before a run touches the open project, which the user can silence for good.
#pragma once

#include <string>
#include <string_view>

#include "rtl/forms/Forms.h"

namespace mig {

// Asks whether the operation may go on, and returns the answer. Returns True without a question where the
// user has silenced this one. `title` is the dialog's caption and the section of the settings. Each of the
// four combinations of arguments has a flag of its own there, which is written when the user says Yes, and at
// no other time.
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
