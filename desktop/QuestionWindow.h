// The window of a question with named buttons (rtl::TQuestion). However long its lists are, it fits on the
// screen.
#pragma once

#include <QDialog>

#include "rtl/forms/Application.h"

class QVBoxLayout;

namespace desktop {

class TQuestionWindow : public QDialog {
 public:
  // Copies the parts of `question` that it needs. The object name of the window is "Question"; that of each
  // button is its caption without accelerator mark and spaces.
  TQuestionWindow(const rtl::TQuestion& question, QWidget* parent);

  // Shows the window until the user has chosen a button, and returns its index.
  int Run();

  // Returns all texts above the buttons, one line each: the text, the reasons, the rows as "label: value",
  // the details.
  const QString& Message() const { return FMessage; }

  void reject() override { done(FCancel); }  // the Escape key and the system menu

 protected:
  void keyPressEvent(QKeyEvent* event) override;  // copies Message() to the clipboard

 private:
  void AddTexts(const rtl::TQuestion& question, QVBoxLayout* column);
  void AddButtons(const rtl::TQuestion& question, QVBoxLayout* column);

  const int FCancel;
  QString FMessage;
};

}  // namespace desktop
