// A question of the program as a form, which the form's window shows like any other.
#pragma once

#include "rtl/forms/Application.h"
#include "rtl/forms/Forms.h"

namespace native {

// The modal result is the index of the chosen button, plus kFirstButton.
class TQuestionForm : public rtl::TForm {
 public:
  static constexpr int kFirstButton = 100;

  explicit TQuestionForm(const rtl::TQuestion& question);
};

}  // namespace native
