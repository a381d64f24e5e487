// The window of a form: creates a widget for every control, shows every change of state, and passes user
// input to the controls. It works for any form.
#pragma once

#include <QDialog>
#include <memory>
#include <unordered_map>
#include <vector>

#include "desktop/ControlWidgets.h"
#include "rtl/forms/Forms.h"

namespace desktop {

class TFormWindow : public QDialog, public rtl::IFormView {
 public:
  // Becomes the form's view for its own lifetime. Does not own the form, which must outlive it.
  TFormWindow(rtl::TForm& form, QWidget* parent);
  ~TFormWindow() override;

  // Shows the window until the form has a modal result.
  void Run();

  // Returns the widget of a control of the form.
  QWidget* WidgetOf(const rtl::TControl& control) const { return FWidgets.at(&control)->Widget(); }

  // --- rtl::IFormView ---
  void ControlChanged(const rtl::TControl& control, rtl::TChange what) override;
  void FocusChanged(const rtl::TControl& control) override;
  void CaptionChanged() override;
  void ModalResultChanged() override;

 protected:
  void reject() override;  // the Escape key
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;  // the system menu

 private:
  void AddWidgets(const std::vector<rtl::TControl*>& controls, QWidget* parent);
  void ConnectLabels();
  void SetTabOrder();
  void Fit();
  void Place();
  void RunEvent(const std::function<void()>& event);
  void BeIdle();

  rtl::TForm& FForm;
  TEventRunner FRunner;
  TEventRunner FClickRunner;
  std::unordered_map<const rtl::TControl*, std::unique_ptr<TControlWidget>> FWidgets;
  std::vector<const rtl::TControl*> FOrder;  // all controls, in tab order
  bool FPageTurned = true;
  bool FIsIdle = false;
};

}  // namespace desktop
